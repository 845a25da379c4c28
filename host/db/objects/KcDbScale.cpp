// Annotation scales (SCALE): name (300), paper units (140), drawing units
// (141) and the unit-scale flag (290), under "100 AcDbScale".
#include <cmath>

#include "db/ApiText.h"
#include "db/RecordFields.h"
#include "db/ResultBuffers.h"
#include "kcdbdatabase.h"

using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr std::string_view kMarker = "AcDbScale";

bool isUnitCount(double units) { return units > 0.0 && std::isfinite(units); }

}  // namespace

Kcad::ErrorStatus KcDbScale::getScaleName(wchar_t*& name) const {
    name = db::duplicateWide(db::toApiText(db::fieldText(record(), kMarker, 300)));
    return name ? Kcad::eOk : Kcad::eOutOfMemory;
}

Kcad::ErrorStatus KcDbScale::setScaleName(const wchar_t* name) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!name) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::string(300, db::toStoredText(name)));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbScale::getPaperUnits(double& units) const {
    units = db::fieldReal(record(), kMarker, 140, 1.0);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbScale::setPaperUnits(double units) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!isUnitCount(units)) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::real(140, units));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbScale::getDrawingUnits(double& units) const {
    units = db::fieldReal(record(), kMarker, 141, 1.0);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbScale::setDrawingUnits(double units) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!isUnitCount(units)) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::real(141, units));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbScale::getIsUnitScale(bool& unit) const {
    unit = db::fieldInteger(record(), kMarker, 290, 0) != 0;
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbScale::setIsUnitScale(bool unit) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::setField(record(), kMarker, Tag::integerValue(290, unit ? 1 : 0));
    return Kcad::eOk;
}
