// VIEWPORT (AcDbViewport): 10 centre (paper space), 40 width, 41 height, 68
// status, 69 id, 12 view centre (2D), 45 view height (drawing units), and one
// 331 per layer frozen in the viewport (the DXF reference's group; the frozen
// list sits after 72 and before 90).
#include <algorithm>
#include <optional>

#include "db/Drawing.h"
#include "db/ObjectAccess.h"
#include "db/RecordTags.h"
#include "db/entities/EntityFields.h"

namespace db = korva::db;
using db::admit;
using korva::db::Handle;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;

namespace {

constexpr std::string_view kViewport = "AcDbViewport";
constexpr int kFrozenLayer = 331;

std::vector<Handle> frozenHandles(const ObjectRecord& record) {
    std::vector<Handle> handles;
    for (db::TagRef tag : db::fieldsOf(record, kViewport, kFrozenLayer)) handles.push_back(tag.handle());
    return handles;
}

// The layer records of the ids; false when one is not a layer of the viewport's drawing.
bool layerHandles(const ObjectRecord& viewport, const KcDbObjectIdArray& ids, std::vector<Handle>& handles) {
    for (const KcDbObjectId& id : ids) {
        const ObjectRecord* layer = ObjectAccess::record(id);
        if (!layer || layer->type != db::Type::Layer || layer->drawing != viewport.drawing) return false;
        if (std::find(handles.begin(), handles.end(), layer->handle) == handles.end()) handles.push_back(layer->handle);
    }
    return true;
}

// Where new 331s go: after the last one, else after 72, else before 90, else at the run's end.
size_t frozenListPosition(const std::vector<Tag>& tags) {
    const db::RunRange run = db::findRun(tags, kViewport);
    const size_t begin = run.begin, end = run.end;
    std::optional<size_t> lastFrozen, after72, before90;
    for (size_t i = begin; i < end; ++i) {
        if (tags[i].code == kFrozenLayer) lastFrozen = i + 1;
        else if (tags[i].code == 72 && !after72) after72 = i + 1;
        else if (tags[i].code == 90 && !before90) before90 = i;
    }
    return lastFrozen.value_or(after72.value_or(before90.value_or(end)));
}

}  // namespace

KcGePoint3d KcDbViewport::centerPoint() const { return db::fieldPoint(record(), kViewport, 10); }
double KcDbViewport::width() const { return db::fieldReal(record(), kViewport, 40, 0.0); }
double KcDbViewport::height() const { return db::fieldReal(record(), kViewport, 41, 0.0); }
Kcad::Int16 KcDbViewport::number() const { return static_cast<Kcad::Int16>(db::fieldInteger(record(), kViewport, 69, 0)); }
KcGePoint2d KcDbViewport::viewCenter() const { return db::fieldPoint(record(), kViewport, 12).convert2d(); }
double KcDbViewport::viewHeight() const { return db::fieldReal(record(), kViewport, 45, 0.0); }

// Without a view height the scale is undefined; 1 then.
double KcDbViewport::customScale() const {
    const double viewHeight = this->viewHeight();
    return viewHeight > 0.0 ? height() / viewHeight : 1.0;
}

bool KcDbViewport::isLayerFrozenInViewport(KcDbObjectId layerId) const {
    const ObjectRecord* layer = ObjectAccess::record(layerId);
    if (!layer || layer->type != db::Type::Layer) return false;
    const std::vector<Handle> handles = frozenHandles(record());
    return std::find(handles.begin(), handles.end(), layer->handle) != handles.end();
}

Kcad::ErrorStatus KcDbViewport::freezeLayersInViewport(const KcDbObjectIdArray& layerIds) {
    std::vector<Handle> wanted;
    if (auto status = admit(checkWritable(), layerHandles(record(), layerIds, wanted)); status != Kcad::eOk) {
        return status;
    }
    const std::vector<Handle> frozen = frozenHandles(record());
    std::vector<Tag> added;
    for (Handle handle : wanted) {
        if (std::find(frozen.begin(), frozen.end(), handle) == frozen.end()) added.push_back(Tag::handle(kFrozenLayer, handle));
    }
    if (added.empty()) return Kcad::eOk;
    std::vector<Tag> tags = record().tags.decode();
    const size_t at = frozenListPosition(tags);
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(at), added.begin(), added.end());
    record().tags = db::TagList::encode(tags);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbViewport::thawLayersInViewport(const KcDbObjectIdArray& layerIds) {
    std::vector<Handle> thawed;
    if (auto status = admit(checkWritable(), layerHandles(record(), layerIds, thawed)); status != Kcad::eOk) {
        return status;
    }
    std::vector<Handle> kept = frozenHandles(record());
    const size_t before = kept.size();
    std::erase_if(kept, [&](Handle h) { return std::find(thawed.begin(), thawed.end(), h) != thawed.end(); });
    if (kept.size() == before) return Kcad::eOk;
    // Only 331 groups are removed; the others keep their places.
    std::vector<Tag> replacement;
    for (Handle handle : kept) replacement.push_back(Tag::handle(kFrozenLayer, handle));
    db::replaceGroups(record(), kViewport, {kFrozenLayer}, replacement);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbViewport::getFrozenLayerList(KcDbObjectIdArray& layerIds) const {
    layerIds.removeAll();
    const ObjectRecord& self = record();
    if (!self.drawing) return Kcad::eOk;
    for (Handle handle : frozenHandles(self)) {
        if (const ObjectRecord* layer = self.drawing->findByHandle(handle)) layerIds.append(ObjectAccess::id(layer));
    }
    return Kcad::eOk;
}
