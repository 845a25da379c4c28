// The common entity properties of the AcDbEntity subclass: layer, colour,
// linetype, linetype scale, lineweight and visibility.
#include <algorithm>

#include "db/ApiText.h"
#include "db/EntityGeometry.h"
#include "db/geometry/PendingParts.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "db/TextCase.h"
#include "kcdbdatabase.h"

using korva::db::kEntityMarker;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr int kStandardWeights[] = {0, 5, 9, 13, 15, 18, 20, 25, 30, 35, 40, 50, 53, 60, 70, 80, 90, 100,
                                    106, 120, 140, 158, 200, 211, -1, -2, -3};

// Applies a change to the entity and, when asked, to its attributes or vertices.
template <class Change>
void applyToEntity(ObjectRecord& entity, bool doSubents, Change&& change) {
    change(entity);
    if (!doSubents || !entity.container) return;
    for (ObjectRecord* sub : entity.container->members) change(*sub);
    if (entity.container->end) change(*entity.container->end);
}

const ObjectRecord* layerRecordOf(const ObjectRecord& entity) {
    if (!entity.drawing) return nullptr;
    return entity.drawing->tableRecord("LAYER", db::fieldText(entity, kEntityMarker, 8, "0"));
}

}  // namespace

KcDbObjectId KcDbEntity::blockId() const {
    const ObjectRecord* r = &record();
    while (r->owner && r->owner->type != db::Type::BlockRecord) r = r->owner;
    return ObjectAccess::id(r->owner);
}

wchar_t* KcDbEntity::layer() const {
    return db::duplicateWide(db::toApiText(db::fieldText(record(), kEntityMarker, 8, "0")));
}

KcDbObjectId KcDbEntity::layerId() const { return ObjectAccess::id(layerRecordOf(record())); }

Kcad::ErrorStatus KcDbEntity::setLayer(const wchar_t* name, bool doSubents) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!name || !*name) return Kcad::eInvalidInput;
    ObjectRecord& self = record();
    const std::string stored = db::toStoredText(name);
    KcDbDatabase* owner = self.drawing ? self.drawing->database
                                       : (kcdbHostApplicationServices()->workingDatabase());
    if (owner) {
        const ObjectRecord* layerRecord = owner->drawing().tableRecord("LAYER", stored);
        if (!layerRecord) return Kcad::eKeyNotFound;
        applyToEntity(self, doSubents, [&](ObjectRecord& r) {
            db::setField(r, kEntityMarker, Tag::string(8, db::recordName(*layerRecord)));
        });
        return Kcad::eOk;
    }
    applyToEntity(self, doSubents, [&](ObjectRecord& r) { db::setField(r, kEntityMarker, Tag::string(8, stored)); });
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbEntity::setLayer(KcDbObjectId layerId, bool doSubents) {
    const ObjectRecord* layerRecord = ObjectAccess::record(layerId);
    if (!layerRecord || layerRecord->type != db::Type::Layer) return Kcad::eInvalidInput;
    return setLayer(db::toApiText(db::recordName(*layerRecord)).c_str(), doSubents);
}

KcCmColor KcDbEntity::color() const {
    const ObjectRecord& self = record();
    KcCmColor color;
    color.setColorIndex(static_cast<Kcad::UInt16>(std::clamp<int64_t>(db::fieldInteger(self, kEntityMarker, 62, 256), 0, 256)));
    db::TagRef rgb;
    if (db::findField(self, kEntityMarker, 420, rgb)) {
        const auto value = static_cast<uint32_t>(rgb.integer());
        color.setRGB(static_cast<Kcad::UInt8>(value >> 16), static_cast<Kcad::UInt8>(value >> 8),
                     static_cast<Kcad::UInt8>(value));
        db::TagRef name;
        if (db::findField(self, kEntityMarker, 430, name)) color.setColorName(db::toApiText(name.text()).c_str());
    }
    return color;
}

Kcad::ErrorStatus KcDbEntity::setColor(const KcCmColor& color, bool doSubents) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!color.isByColor()) return setColorIndex(color.colorIndex(), doSubents);
    applyToEntity(record(), doSubents, [&](ObjectRecord& r) {
        // A true colour keeps the nearest index in 62 for readers without true colours.
        if (!db::hasField(r, kEntityMarker, 62)) db::setField(r, kEntityMarker, Tag::integerValue(62, 7));
        db::setField(r, kEntityMarker, Tag::integerValue(420, static_cast<int64_t>(color.rgb())));
        if (*color.colorName()) db::setField(r, kEntityMarker, Tag::string(430, db::toStoredText(color.colorName())));
        else db::removeField(r, kEntityMarker, 430);
    });
    return Kcad::eOk;
}

Kcad::UInt16 KcDbEntity::colorIndex() const {
    return static_cast<Kcad::UInt16>(std::clamp<int64_t>(db::fieldInteger(record(), kEntityMarker, 62, 256), 0, 256));
}

Kcad::ErrorStatus KcDbEntity::setColorIndex(Kcad::UInt16 index, bool doSubents) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (index > 256) return Kcad::eInvalidInput;
    applyToEntity(record(), doSubents, [&](ObjectRecord& r) {
        if (index != 256 || db::hasField(r, kEntityMarker, 62)) db::setField(r, kEntityMarker, Tag::integerValue(62, index));
        db::removeField(r, kEntityMarker, 420);
        db::removeField(r, kEntityMarker, 430);
    });
    return Kcad::eOk;
}

wchar_t* KcDbEntity::linetype() const {
    return db::duplicateWide(db::toApiText(db::fieldText(record(), kEntityMarker, 6, "ByLayer")));
}

KcDbObjectId KcDbEntity::linetypeId() const {
    const ObjectRecord& self = record();
    if (!self.drawing) return KcDbObjectId();
    return ObjectAccess::id(self.drawing->tableRecord("LTYPE", db::fieldText(self, kEntityMarker, 6, "ByLayer")));
}

Kcad::ErrorStatus KcDbEntity::setLinetype(const wchar_t* name, bool doSubents) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!name || !*name) return Kcad::eInvalidInput;
    ObjectRecord& self = record();
    std::string stored = db::toStoredText(name);
    if (self.drawing) {
        const ObjectRecord* linetype = self.drawing->tableRecord("LTYPE", stored);
        if (!linetype && !db::namesEqual(stored, "ByLayer") && !db::namesEqual(stored, "ByBlock")) return Kcad::eKeyNotFound;
        if (linetype) stored = std::string(db::recordName(*linetype));
    }
    applyToEntity(self, doSubents, [&](ObjectRecord& r) { db::setField(r, kEntityMarker, Tag::string(6, stored)); });
    return Kcad::eOk;
}

double KcDbEntity::linetypeScale() const { return db::fieldReal(record(), kEntityMarker, 48, 1.0); }

Kcad::ErrorStatus KcDbEntity::setLinetypeScale(double scale, bool doSubents) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!(scale > 0.0)) return Kcad::eInvalidInput;
    applyToEntity(record(), doSubents, [&](ObjectRecord& r) { db::setField(r, kEntityMarker, Tag::real(48, scale)); });
    return Kcad::eOk;
}

KcDb::LineWeight KcDbEntity::lineWeight() const {
    return static_cast<KcDb::LineWeight>(db::fieldInteger(record(), kEntityMarker, 370, -1));
}

Kcad::ErrorStatus KcDbEntity::setLineWeight(KcDb::LineWeight weight, bool doSubents) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (std::find(std::begin(kStandardWeights), std::end(kStandardWeights), static_cast<int>(weight)) ==
        std::end(kStandardWeights)) {
        return Kcad::eInvalidInput;
    }
    applyToEntity(record(), doSubents, [&](ObjectRecord& r) {
        db::setField(r, kEntityMarker, Tag::integerValue(370, static_cast<int>(weight)));
    });
    return Kcad::eOk;
}

Kcad::Visibility KcDbEntity::visibility() const {
    return db::fieldInteger(record(), kEntityMarker, 60, 0) == 1 ? Kcad::kInvisible : Kcad::kVisible;
}

Kcad::ErrorStatus KcDbEntity::setVisibility(Kcad::Visibility visibility, bool doSubents) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    applyToEntity(record(), doSubents, [&](ObjectRecord& r) {
        if (visibility == Kcad::kInvisible) db::setField(r, kEntityMarker, Tag::integerValue(60, 1));
        else if (db::hasField(r, kEntityMarker, 60)) db::setField(r, kEntityMarker, Tag::integerValue(60, 0));
    });
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbEntity::getGeomExtents(KcDbExtents& extents) const {
    korva::geom::Box3d box;
    if (!db::entityExtents(record(), box)) return Kcad::eInvalidExtents;
    extents.set(box.min(), box.max());
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbEntity::transformBy(const KcGeMatrix3d& m) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    return db::transformEntity(record(), m);
}

Kcad::ErrorStatus KcDbEntity::explode(KcDbVoidPtrArray& entities) const {
    std::vector<std::unique_ptr<KcDbEntity>> parts;
    const Kcad::ErrorStatus status = db::explodeEntity(record(), parts);
    if (status != Kcad::eOk) return status;
    for (auto& part : parts) entities.append(part.release());
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbEntity::getTransformedCopy(const KcGeMatrix3d& m, KcDbEntity*& copy) const {
    copy = nullptr;
    std::unique_ptr<KcDbEntity> clone = db::geometry::copyAsPart(record());
    const Kcad::ErrorStatus status = db::transformEntity(db::geometry::partRecord(*clone), m);
    if (status != Kcad::eOk) return status;
    copy = clone.release();
    return Kcad::eOk;
}

// --- colours and extents -----------------------------------------------------

Kcad::ErrorStatus KcCmColor::setColorMethod(ColorMethod method) {
    m_method = method;
    if (method == kByLayer) m_index = 256;
    else if (method == kByBlock) m_index = 0;
    return Kcad::eOk;
}

Kcad::UInt16 KcCmColor::colorIndex() const {
    switch (m_method) {
        case kByLayer: return 256;
        case kByBlock: return 0;
        default: return m_index;
    }
}

Kcad::ErrorStatus KcCmColor::setColorIndex(Kcad::UInt16 index) {
    if (index > 256) return Kcad::eInvalidInput;
    m_index = index;
    m_rgb = 0;
    m_name.clear();
    m_method = index == 256 ? kByLayer : index == 0 ? kByBlock : kByACI;
    return Kcad::eOk;
}

Kcad::ErrorStatus KcCmColor::setRGB(Kcad::UInt8 red, Kcad::UInt8 green, Kcad::UInt8 blue) {
    m_method = kByColor;
    m_rgb = (static_cast<Kcad::UInt32>(red) << 16) | (static_cast<Kcad::UInt32>(green) << 8) | blue;
    return Kcad::eOk;
}

Kcad::ErrorStatus KcCmColor::setColorName(const wchar_t* name) {
    m_name = name ? name : L"";
    return Kcad::eOk;
}

KcDbExtents::KcDbExtents() : m_min(1e20, 1e20, 1e20), m_max(-1e20, -1e20, -1e20) {}
KcDbExtents::KcDbExtents(const KcGePoint3d& min, const KcGePoint3d& max) : m_min(min), m_max(max) {}

void KcDbExtents::set(const KcGePoint3d& min, const KcGePoint3d& max) {
    m_min = min;
    m_max = max;
}

void KcDbExtents::addPoint(const KcGePoint3d& p) {
    m_min.set(std::min(m_min.x, p.x), std::min(m_min.y, p.y), std::min(m_min.z, p.z));
    m_max.set(std::max(m_max.x, p.x), std::max(m_max.y, p.y), std::max(m_max.z, p.z));
}

void KcDbExtents::addExt(const KcDbExtents& other) {
    if (!other.isValid()) return;
    addPoint(other.m_min);
    addPoint(other.m_max);
}

void KcDbExtents::transformBy(const KcGeMatrix3d& m) {
    if (!isValid()) return;
    korva::geom::Box3d box(m_min, m_max);
    box = box.transformedBy(m);
    m_min = box.min();
    m_max = box.max();
}
