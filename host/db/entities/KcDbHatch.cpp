// HATCH (AcDbHatch): 10 elevation point, 210 normal, 2 pattern name, 70 solid
// fill, 71 associativity, 91 boundary paths, 75 style, 52 pattern angle
// (degrees), 41 scale, 78 pattern lines, and the gradient groups 450 (gradient
// flag), 460 angle (radians), 461 shift, 470 name. The boundary paths and
// pattern lines are read by HatchData.
#include "db/ApiText.h"
#include "db/entities/EntityFields.h"
#include "db/entities/HatchData.h"

namespace db = korva::db;

namespace {

constexpr std::string_view kHatch = "AcDbHatch";

// The gradient names a DXF file can carry; others are user-defined.
constexpr std::string_view kPredefinedGradients[] = {"LINEAR",        "CYLINDER",   "INVCYLINDER",
                                                    "SPHERICAL",     "INVSPHERICAL", "HEMISPHERICAL",
                                                    "INVHEMISPHERICAL", "CURVED",  "INVCURVED"};

void copyPoints(const std::vector<KcGePoint2d>& from, KcGePoint2dArray& to) {
    to.removeAll();
    for (const KcGePoint2d& point : from) to.append(point);
}

void copyReals(const std::vector<double>& from, KcGeDoubleArray& to) {
    to.removeAll();
    for (double value : from) to.append(value);
}

}  // namespace

KcDbHatch::HatchStyle KcDbHatch::hatchStyle() const {
    return static_cast<HatchStyle>(db::fieldInteger(record(), kHatch, 75, kNormal));
}

const wchar_t* KcDbHatch::patternName() const { return keepString(db::toApiText(db::fieldText(record(), kHatch, 2))); }
bool KcDbHatch::isSolidFill() const { return db::fieldInteger(record(), kHatch, 70, 0) == 1; }
double KcDbHatch::patternAngle() const { return db::angleField(record(), kHatch, 52); }
double KcDbHatch::patternScale() const { return db::fieldReal(record(), kHatch, 41, 1.0); }
bool KcDbHatch::associative() const { return db::fieldInteger(record(), kHatch, 71, 0) != 0; }
double KcDbHatch::elevation() const { return db::fieldPoint(record(), kHatch, 10).z; }
KcGeVector3d KcDbHatch::normal() const { return db::normalField(record(), kHatch); }
int KcDbHatch::numLoops() const { return static_cast<int>(db::fieldInteger(record(), kHatch, 91, 0)); }

// -1 for a loop the hatch does not have.
Kcad::Int32 KcDbHatch::loopTypeAt(int index) const {
    const db::HatchData data = db::readHatchData(record());
    if (index < 0 || static_cast<size_t>(index) >= data.loops.size()) return -1;
    return data.loops[static_cast<size_t>(index)].type;
}

Kcad::ErrorStatus KcDbHatch::getLoopAt(int index, Kcad::Int32& loopType, KcGePoint2dArray& vertices,
                                       KcGeDoubleArray& bulges) const {
    const db::HatchData data = db::readHatchData(record());
    if (index < 0 || static_cast<size_t>(index) >= data.loops.size()) return Kcad::eInvalidInput;
    const db::HatchLoop& loop = data.loops[static_cast<size_t>(index)];
    loopType = loop.type;
    copyPoints(loop.vertices, vertices);
    copyReals(loop.bulges, bulges);
    return Kcad::eOk;
}

int KcDbHatch::numPatternDefinitions() const {
    return static_cast<int>(db::readHatchData(record()).patternLines.size());
}

Kcad::ErrorStatus KcDbHatch::getPatternDefinitionAt(int index, double& angle, double& baseX, double& baseY,
                                                    double& offsetX, double& offsetY, KcGeDoubleArray& dashes) const {
    const db::HatchData data = db::readHatchData(record());
    if (index < 0 || static_cast<size_t>(index) >= data.patternLines.size()) return Kcad::eInvalidInput;
    const db::HatchPatternLine& line = data.patternLines[static_cast<size_t>(index)];
    angle = db::radiansFromDegrees(line.angleDegrees);
    baseX = line.baseX;
    baseY = line.baseY;
    offsetX = line.offsetX;
    offsetY = line.offsetY;
    copyReals(line.dashes, dashes);
    return Kcad::eOk;
}

bool KcDbHatch::isGradient() const { return db::fieldInteger(record(), kHatch, 450, 0) != 0; }

const wchar_t* KcDbHatch::gradientName() const {
    return keepString(db::toApiText(db::fieldText(record(), kHatch, 470)));
}

// 0 a predefined gradient (or none), 1 a user-defined one.
int KcDbHatch::gradientType() const {
    if (!isGradient()) return 0;
    const std::string_view name = db::fieldText(record(), kHatch, 470);
    for (std::string_view predefined : kPredefinedGradients) {
        if (name == predefined) return 0;
    }
    return 1;
}

double KcDbHatch::gradientAngle() const { return db::fieldReal(record(), kHatch, 460, 0.0); }
double KcDbHatch::gradientShift() const { return db::fieldReal(record(), kHatch, 461, 0.0); }
