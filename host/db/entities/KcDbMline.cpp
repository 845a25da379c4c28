// MLINE (AcDbMline): 2 style name, 40 scale, 70 justification (0 top, 1 zero,
// 2 bottom), 72 vertex count, 10 start point, 210 normal, then per vertex an 11
// position (world) with its 12 direction, 13 miter and element parameters.
#include "db/entities/EntityFields.h"

namespace db = korva::db;

namespace {

constexpr std::string_view kMline = "AcDbMline";

}  // namespace

int KcDbMline::numVertices() const { return static_cast<int>(db::fieldsOf(record(), kMline, 11).size()); }
int KcDbMline::justification() const { return static_cast<int>(db::fieldInteger(record(), kMline, 70, 0)); }
double KcDbMline::scale() const { return db::fieldReal(record(), kMline, 40, 1.0); }

// The origin outside the vertex list.
KcGePoint3d KcDbMline::vertexAt(int index) const {
    db::TagRef tag;
    if (index < 0 || !db::nthField(record(), kMline, 11, static_cast<size_t>(index), tag)) return KcGePoint3d::kOrigin;
    return tag.point();
}
