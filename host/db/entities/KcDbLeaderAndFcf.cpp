// LEADER and TOLERANCE, the annotations drawn with a dimension style.
// AcDbLeader: 3 style, 40 annotation height, 41 annotation width, 76 vertex
// count, 10 vertices (world), 210 normal. AcDbFcf: 3 style, 10 location
// (world), 1 text, 210 normal, 11 direction. Dimension variables come from the
// entity's overrides, else its style, else the metric defaults.
#include "db/entities/DimStyleOverrides.h"
#include "db/entities/EntityFields.h"

namespace db = korva::db;

namespace {

constexpr std::string_view kLeader = "AcDbLeader";
constexpr std::string_view kFcf = "AcDbFcf";

enum DimVariable : int { kDimscale = 40, kDimasz = 41, kDimtxt = 140, kDimgap = 147, kDimclrd = 176, kDimclrt = 178 };

}  // namespace

// --- LEADER ------------------------------------------------------------------

KcGeVector3d KcDbLeader::normal() const { return db::normalField(record(), kLeader); }

int KcDbLeader::numVertices() const { return static_cast<int>(db::fieldsOf(record(), kLeader, 10).size()); }

// The origin outside the vertex list.
KcGePoint3d KcDbLeader::vertexAt(int index) const {
    db::TagRef tag;
    if (index < 0 || !db::nthField(record(), kLeader, 10, static_cast<size_t>(index), tag)) return KcGePoint3d::kOrigin;
    return tag.point();
}

double KcDbLeader::annoHeight() const { return db::fieldReal(record(), kLeader, 40, 0.0); }
double KcDbLeader::annoWidth() const { return db::fieldReal(record(), kLeader, 41, 0.0); }
double KcDbLeader::dimasz() const { return db::dimVariable(record(), kLeader, kDimasz, 2.5); }
double KcDbLeader::dimgap() const { return db::dimVariable(record(), kLeader, kDimgap, 0.625); }
double KcDbLeader::dimscale() const { return db::dimVariable(record(), kLeader, kDimscale, 1.0); }

Kcad::ErrorStatus KcDbLeader::setDimclrd(const KcCmColor& color) {
    return db::setDimColorOverride(record(), checkWritable(), kDimclrd, color);
}

// --- TOLERANCE ---------------------------------------------------------------

wchar_t* KcDbFcf::text() const { return db::allocatedText(db::fieldText(record(), kFcf, 1)); }
KcGePoint3d KcDbFcf::location() const { return db::fieldPoint(record(), kFcf, 10); }
KcGeVector3d KcDbFcf::normal() const { return db::normalField(record(), kFcf); }
KcGeVector3d KcDbFcf::direction() const { return db::fieldVector(record(), kFcf, 11, KcGeVector3d::kXAxis); }
double KcDbFcf::dimgap() const { return db::dimVariable(record(), kFcf, kDimgap, 0.625); }
double KcDbFcf::dimscale() const { return db::dimVariable(record(), kFcf, kDimscale, 1.0); }
double KcDbFcf::dimtxt() const { return db::dimVariable(record(), kFcf, kDimtxt, 2.5); }

Kcad::ErrorStatus KcDbFcf::setDimclrd(const KcCmColor& color) {
    return db::setDimColorOverride(record(), checkWritable(), kDimclrd, color);
}

Kcad::ErrorStatus KcDbFcf::setDimclrt(const KcCmColor& color) {
    return db::setDimColorOverride(record(), checkWritable(), kDimclrt, color);
}
