// Wipeouts and images. Both are a grid of pixels placed by an origin (10, the
// lower left corner), the vectors of one pixel along a row (11) and up a column
// (12) and the size in pixels (13), cut by a clip boundary (71: 1 rectangle by
// two corners, 2 polygon; 14 vertices) in pixel coordinates: x to the right and
// y down from the top row, pixel centres at whole numbers, so the whole grid
// spans -0.5 to size - 0.5. A wipeout fills its outline with the background
// colour, masking what was drawn before it, and shows its frame when wipeout
// frames are on; an image (its pixels are not read) shows its frame.
#include "db/RecordFields.h"
#include "db/geometry/EntityTags.h"
#include "db/objects/DictionaryEntries.h"
#include "render/EntityPainters.h"

namespace korva::render {

namespace {

using db::geometry::EntityTags;

// The outline in pixel coordinates: the clip boundary when clipping is on, else the grid.
std::vector<QPointF> outlineOf(const EntityTags& t, const QPointF& size) {
    std::vector<QPointF> vertices;
    if (t.integer(280, 1) != 0) {
        for (size_t i = 0; i < t.extendedDataStart(); ++i) {
            if (t.isData(i) && t.tags[i].code == 14 && t.tags[i].isPoint()) {
                vertices.emplace_back(t.tags[i].xyz[0], t.tags[i].xyz[1]);
            }
        }
    }
    if (vertices.size() == 2 || (vertices.size() >= 2 && t.integer(71, 2) == 1)) {
        const QPointF a = vertices[0], b = vertices[1];
        return {a, {b.x(), a.y()}, b, {a.x(), b.y()}};
    }
    if (vertices.size() < 3) {
        const QPointF low(-0.5, -0.5), high(size.x() - 0.5, size.y() - 0.5);
        return {low, {high.x(), low.y()}, high, {low.x(), high.y()}};
    }
    if (vertices.size() > 3 && vertices.front() == vertices.back()) vertices.pop_back();
    return vertices;
}

int64_t wipeoutFrameSetting(const db::Drawing& drawing) {
    if (const auto header = drawing.header.getInteger("$WIPEOUTFRAME")) return *header;
    const db::ObjectRecord* root = drawing.rootDictionary();
    if (!root) return 1;
    for (const db::DictionaryEntry& entry : db::dictionaryEntries(*root)) {
        if (entry.key != "ACAD_WIPEOUT_VARS") continue;
        const db::ObjectRecord* variables = db::liveEntryObject(*root, entry);
        if (variables && variables->type == db::Type::WipeoutVariables) {
            return db::fieldInteger(*variables, "AcDbWipeoutVariables", 70, 1);
        }
    }
    return 1;
}

}  // namespace

SceneSettings sceneSettingsOf(const db::Drawing& drawing) {
    SceneSettings settings;
    settings.wipeoutFrames = wipeoutFrameSetting(drawing) == 1;
    return settings;
}

bool drawImageEntity(const DrawItem& item) {
    const bool wipeout = item.entity.type == db::Type::Wipeout;
    if (!wipeout && item.entity.type != db::Type::Image) return false;
    const EntityTags t(item.entity);
    const KcGePoint3d origin = t.point(10);
    const KcGeVector3d u = t.point(11, {1, 0, 0}).asVector();
    const KcGeVector3d v = t.point(12, {0, 1, 0}).asVector();
    const KcGePoint3d size = t.point(13, {1, 1, 0});
    QPolygonF outline;
    for (const QPointF& p : outlineOf(t, {size.x, size.y})) {
        outline << item.placement.picture(origin + u * (p.x() + 0.5) + v * (size.y - 0.5 - p.y()));
    }
    if (outline.size() < 3) return true;
    if (wipeout) item.canvas.fillPolygon(outline, item.canvas.background());
    if (!wipeout || item.settings.wipeoutFrames) {
        outline << outline.front();
        item.canvas.strokePolyline(outline, item.pen());
    }
    return true;
}

}  // namespace korva::render
