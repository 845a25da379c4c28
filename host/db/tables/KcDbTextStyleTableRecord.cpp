// Text style records: fixed height (40), width factor (41), oblique angle (50,
// degrees in the record and radians in the API), generation flags (71), last
// height used (42), font file (3), big font file (4); group 70 marks shape files
// (1) and vertical text (4).
#include <cmath>

#include "db/ApiText.h"
#include "db/RecordFields.h"
#include "db/ResultBuffers.h"
#include "kcdbdatabase.h"

using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr std::string_view kMarker = "AcDbTextStyleTableRecord";
constexpr double kDegrees = 180.0 / 3.14159265358979323846;

Kcad::ErrorStatus fileNameOf(const korva::db::ObjectRecord& style, int code, wchar_t*& name) {
    name = db::duplicateWide(db::toApiText(db::fieldText(style, kMarker, code)));
    return name ? Kcad::eOk : Kcad::eOutOfMemory;
}

}  // namespace

double KcDbTextStyleTableRecord::textSize() const { return db::fieldReal(record(), kMarker, 40, 0.0); }

Kcad::ErrorStatus KcDbTextStyleTableRecord::setTextSize(double size) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!(size >= 0.0) || !std::isfinite(size)) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::real(40, size));
    return Kcad::eOk;
}

double KcDbTextStyleTableRecord::xScale() const { return db::fieldReal(record(), kMarker, 41, 1.0); }

Kcad::ErrorStatus KcDbTextStyleTableRecord::setXScale(double scale) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!(scale > 0.0) || !std::isfinite(scale)) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::real(41, scale));
    return Kcad::eOk;
}

double KcDbTextStyleTableRecord::obliquingAngle() const { return db::fieldReal(record(), kMarker, 50, 0.0) / kDegrees; }

Kcad::ErrorStatus KcDbTextStyleTableRecord::setObliquingAngle(double angle) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!std::isfinite(angle)) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::real(50, angle * kDegrees));
    return Kcad::eOk;
}

double KcDbTextStyleTableRecord::priorSize() const { return db::fieldReal(record(), kMarker, 42, 0.0); }

Kcad::ErrorStatus KcDbTextStyleTableRecord::setPriorSize(double size) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!(size >= 0.0) || !std::isfinite(size)) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::real(42, size));
    return Kcad::eOk;
}

Kcad::UInt8 KcDbTextStyleTableRecord::flagBits() const {
    return static_cast<Kcad::UInt8>(db::fieldInteger(record(), kMarker, 71, 0));
}

Kcad::ErrorStatus KcDbTextStyleTableRecord::setFlagBits(Kcad::UInt8 bits) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if ((bits & ~0x06) != 0) return Kcad::eInvalidInput;  // only "mirrored in X" and "upside down" exist
    db::setField(record(), kMarker, Tag::integerValue(71, bits));
    return Kcad::eOk;
}

bool KcDbTextStyleTableRecord::isShapeFile() const { return (db::fieldInteger(record(), kMarker, 70, 0) & 1) != 0; }

bool KcDbTextStyleTableRecord::isVertical() const { return (db::fieldInteger(record(), kMarker, 70, 0) & 4) != 0; }

Kcad::ErrorStatus KcDbTextStyleTableRecord::fileName(wchar_t*& name) const { return fileNameOf(record(), 3, name); }

Kcad::ErrorStatus KcDbTextStyleTableRecord::setFileName(const wchar_t* name) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!name) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::string(3, db::toStoredText(name)));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbTextStyleTableRecord::bigFontFileName(wchar_t*& name) const {
    return fileNameOf(record(), 4, name);
}

Kcad::ErrorStatus KcDbTextStyleTableRecord::setBigFontFileName(const wchar_t* name) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!name) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, Tag::string(4, db::toStoredText(name)));
    return Kcad::eOk;
}
