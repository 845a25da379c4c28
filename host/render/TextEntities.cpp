// Texts as filled glyph outlines from the host's fonts (fonts/TextOutlines.h),
// the same outlines the database measures. A single-line text is drawn from
// its insertion point (group 10, where the text really starts), mirrored by its
// backward (71 bit 2) and upside-down (71 bit 4) flags, turned by its rotation
// (50) and placed in the OCS of its extrusion; an MTEXT in its frame (location,
// direction and up vector). Attribute definitions show their tag; invisible
// attributes do not show.
#include "db/geometry/EntityTags.h"
#include "db/geometry/TextGeometry.h"
#include "db/TextMetrics.h"
#include "fonts/TextOutlines.h"
#include "geom/Angles.h"
#include "render/EntityPainters.h"

namespace korva::render {

namespace {

using db::geometry::EntityTags;

void drawSingleLineText(const DrawItem& item) {
    const EntityTags t(item.entity);
    const bool definition = item.entity.type == db::Type::AttDef;
    if (item.entity.type == db::Type::Attrib && (t.integer(70, 0) & 1)) return;
    const db::Tag* shown = t.first(definition ? 2 : 1);
    if (!shown || shown->kind != db::TagKind::String || shown->text.empty()) return;
    const QPainterPath outline = fonts::textPath(shown->text, db::textStyleOf(item.entity));
    if (outline.isEmpty()) return;
    const int64_t generation = t.integer(71, 0);
    const KcGeScale3d mirror((generation & 2) ? -1.0 : 1.0, (generation & 4) ? -1.0 : 1.0, 1.0);
    const KcGePoint3d position = t.point(10);
    const KcGeMatrix3d textToEntity = KcGeMatrix3d::planeToWorld(t.normal()) *
                                      KcGeMatrix3d::translation(position.asVector()) *
                                      KcGeMatrix3d::rotation(geom::degreesToRadians(t.real(50, 0.0)), KcGeVector3d::kZAxis) *
                                      KcGeMatrix3d::scaling(mirror);
    item.canvas.fill(item.placement.planeToPicture(textToEntity).map(outline), item.style.color);
}

void drawMText(const DrawItem& item) {
    const QPainterPath outline = fonts::mtextPath(item.entity);
    if (outline.isEmpty()) return;
    const db::geometry::MTextFrame frame = db::geometry::mtextFrame(item.entity);
    const KcGeMatrix3d frameToEntity = planeOfAxes(frame.location, frame.direction, frame.up, frame.normal);
    item.canvas.fill(item.placement.planeToPicture(frameToEntity).map(outline), item.style.color);
}

}  // namespace

bool drawTextEntity(const DrawItem& item) {
    switch (item.entity.type) {
        case db::Type::Text:
        case db::Type::Attrib:
        case db::Type::AttDef:
            drawSingleLineText(item);
            return true;
        case db::Type::MText:
            drawMText(item);
            return true;
        default:
            return false;
    }
}

}  // namespace korva::render
