// Layer records: state flags (70: 1 frozen, 2 frozen in new viewports,
// 4 locked), on/off as the sign of the colour (62), true colour (420, 430),
// linetype by name (6), lineweight (370) and plotting (290).
#include <algorithm>
#include <cstdlib>

#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/tables/TableAccess.h"
#include "kcdbdatabase.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr std::string_view kMarker = "AcDbLayerTableRecord";
constexpr int64_t kFrozen = 1;
constexpr int64_t kFrozenInNewViewports = 2;
constexpr int64_t kLocked = 4;

constexpr int kLayerWeights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,  53,
                                 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211, -3};

int64_t flagsOf(const ObjectRecord& layer) { return db::fieldInteger(layer, kMarker, 70, 0); }

void setFlag(ObjectRecord& layer, int64_t flag, bool on) {
    const int64_t flags = flagsOf(layer);
    db::setField(layer, kMarker, Tag::integerValue(70, on ? (flags | flag) : (flags & ~flag)));
}

int64_t signedColor(const ObjectRecord& layer) { return db::fieldInteger(layer, kMarker, 62, 7); }

}  // namespace

bool KcDbLayerTableRecord::isOff() const { return signedColor(record()) < 0; }

Kcad::ErrorStatus KcDbLayerTableRecord::setIsOff(bool off) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    int64_t index = std::llabs(signedColor(record()));
    if (index == 0) index = 7;  // a layer colour is never BYBLOCK; keep the layer visible in some colour
    db::setField(record(), kMarker, Tag::integerValue(62, off ? -index : index));
    return Kcad::eOk;
}

bool KcDbLayerTableRecord::isFrozen() const { return (flagsOf(record()) & kFrozen) != 0; }

Kcad::ErrorStatus KcDbLayerTableRecord::setIsFrozen(bool frozen) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    setFlag(record(), kFrozen, frozen);
    return Kcad::eOk;
}

bool KcDbLayerTableRecord::isLocked() const { return (flagsOf(record()) & kLocked) != 0; }

Kcad::ErrorStatus KcDbLayerTableRecord::setIsLocked(bool locked) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    setFlag(record(), kLocked, locked);
    return Kcad::eOk;
}

bool KcDbLayerTableRecord::VPDFLT() const { return (flagsOf(record()) & kFrozenInNewViewports) != 0; }

Kcad::ErrorStatus KcDbLayerTableRecord::setVPDFLT(bool frozen) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    setFlag(record(), kFrozenInNewViewports, frozen);
    return Kcad::eOk;
}

bool KcDbLayerTableRecord::isPlottable() const { return db::fieldInteger(record(), kMarker, 290, 1) != 0; }

Kcad::ErrorStatus KcDbLayerTableRecord::setIsPlottable(bool plottable) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::setField(record(), kMarker, Tag::integerValue(290, plottable ? 1 : 0));
    return Kcad::eOk;
}

KcCmColor KcDbLayerTableRecord::color() const {
    const ObjectRecord& self = record();
    KcCmColor color;
    color.setColorIndex(static_cast<Kcad::UInt16>(std::clamp<int64_t>(std::llabs(signedColor(self)), 1, 255)));
    db::TagRef rgb;
    if (db::findField(self, kMarker, 420, rgb)) {
        const auto value = static_cast<uint32_t>(rgb.integer());
        color.setRGB(static_cast<Kcad::UInt8>(value >> 16), static_cast<Kcad::UInt8>(value >> 8),
                     static_cast<Kcad::UInt8>(value));
        db::TagRef name;
        if (db::findField(self, kMarker, 430, name)) color.setColorName(db::toApiText(name.text()).c_str());
    }
    return color;
}

Kcad::ErrorStatus KcDbLayerTableRecord::setColor(const KcCmColor& color) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const bool off = isOff();
    if (color.isByColor()) {
        // The index stays as the colour for readers without true colours.
        db::setField(self, kMarker, Tag::integerValue(62, off ? -std::llabs(signedColor(self)) : std::llabs(signedColor(self))));
        db::setField(self, kMarker, Tag::integerValue(420, static_cast<int64_t>(color.rgb())));
        if (*color.colorName()) db::setField(self, kMarker, Tag::string(430, db::toStoredText(color.colorName())));
        else db::removeField(self, kMarker, 430);
        return Kcad::eOk;
    }
    const int index = color.colorIndex();
    if (index < 1 || index > 255) return Kcad::eInvalidInput;  // a layer has no BYLAYER or BYBLOCK colour
    db::setField(self, kMarker, Tag::integerValue(62, off ? -index : index));
    db::removeField(self, kMarker, 420);
    db::removeField(self, kMarker, 430);
    return Kcad::eOk;
}

KcDbObjectId KcDbLayerTableRecord::linetypeObjectId() const {
    const ObjectRecord& self = record();
    const db::Drawing* drawing = self.drawing;
    if (!drawing) {
        KcDbDatabase* working = kcdbHostApplicationServices()->workingDatabase();
        drawing = working ? &working->drawing() : nullptr;
    }
    if (!drawing) return KcDbObjectId();
    return ObjectAccess::id(drawing->tableRecord("LTYPE", db::fieldText(self, kMarker, 6, "Continuous")));
}

Kcad::ErrorStatus KcDbLayerTableRecord::setLinetypeObjectId(KcDbObjectId linetype) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    const ObjectRecord* linetypeRecord = ObjectAccess::record(linetype);
    if (!linetypeRecord || linetypeRecord->type != db::Type::Ltype || linetypeRecord->erased) return Kcad::eInvalidInput;
    ObjectRecord& self = record();
    if (self.drawing && self.drawing != linetypeRecord->drawing) return Kcad::eInvalidInput;
    db::setField(self, kMarker, Tag::string(6, db::recordName(*linetypeRecord)));
    return Kcad::eOk;
}

KcDb::LineWeight KcDbLayerTableRecord::lineWeight() const {
    return static_cast<KcDb::LineWeight>(db::fieldInteger(record(), kMarker, 370, KcDb::kLnWtByLwDefault));
}

Kcad::ErrorStatus KcDbLayerTableRecord::setLineWeight(KcDb::LineWeight weight) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (std::find(std::begin(kLayerWeights), std::end(kLayerWeights), static_cast<int>(weight)) == std::end(kLayerWeights)) {
        return Kcad::eInvalidInput;
    }
    db::setField(record(), kMarker, Tag::integerValue(370, static_cast<int>(weight)));
    return Kcad::eOk;
}
