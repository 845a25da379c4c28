// Texts of a scene as filled outlines from real fonts. A single-line text's
// outline (fonts::textPath: its own coordinates, from the insertion point, y
// up, width factor and oblique applied) is mirrored by the backward and
// upside-down flags about the insertion point, turned by the rotation, set in
// the plane of its extrusion and then taken to display coordinates: the same
// placement as the database's text box (db/geometry/TextGeometry.h). An
// MTEXT's outline (fonts::mtextPath) is in its frame. Outlines are mapped
// before they are flattened, so that the flattening tolerance holds in
// display units.
#include <QPainterPath>
#include <QTransform>

#include "commands/wmf/WmfScene.h"
#include "db/ObjectAccess.h"
#include "db/geometry/EntityTags.h"
#include "db/geometry/TextGeometry.h"
#include "fonts/TextOutlines.h"

namespace korva::commands::wmf {

namespace {

// The plane map of a transformation that takes the xy plane of some frame into
// display coordinates, as a Qt transformation of (x, y).
QTransform planeTransform(const KcGeMatrix3d& m) {
    return QTransform(m(0, 0), m(1, 0), m(0, 1), m(1, 1), m(0, 3), m(1, 3));
}

void addOutline(const QPainterPath& outline, const KcGeMatrix3d& frameToDisplay, WmfSceneBuilder::Sink& sink) {
    if (outline.isEmpty()) return;
    const QPainterPath shown = planeTransform(frameToDisplay).map(outline);
    SceneShape shape;
    shape.kind = SceneKind::Filled;
    for (const fonts::Contour& contour : fonts::flattenPath(shown, sink.displayTolerance())) {
        SceneContour points;
        points.reserve(contour.size());
        for (const auto& p : contour) points.push_back({p[0], p[1]});
        shape.contours.push_back(std::move(points));
    }
    if (!shape.contours.empty()) sink.displayShape(std::move(shape));
}

// Where a single-line text's own coordinates go in the world.
KcGeMatrix3d singleLinePlacement(const KcDbText& text) {
    const KcGeMatrix3d mirror = KcGeMatrix3d::scaling(KcGeScale3d(text.isMirroredInX() ? -1.0 : 1.0,
                                                                  text.isMirroredInY() ? -1.0 : 1.0, 1.0));
    const KcGeMatrix3d turn = KcGeMatrix3d::rotation(text.rotation(), KcGeVector3d::kZAxis);
    const KcGeMatrix3d plane = KcGeMatrix3d::planeToWorld(text.normal());
    // planeToWorld is the plane's rotation: the position is placed after it, in world terms.
    return KcGeMatrix3d::translation(text.position().asVector()) * plane * turn * mirror;
}

void addSingleLineText(const KcDbText& text, std::string_view shown, WmfSceneBuilder::Sink& sink) {
    const db::ObjectRecord& record = db::ObjectAccess::record(text);
    addOutline(fonts::textPath(shown, db::textStyleOf(record)), sink.toDisplay() * singleLinePlacement(text), sink);
}

void addMText(const KcDbMText& mtext, WmfSceneBuilder::Sink& sink) {
    const db::ObjectRecord& record = db::ObjectAccess::record(mtext);
    const db::geometry::MTextFrame frame = db::geometry::mtextFrame(record);
    KcGeMatrix3d placement;
    placement.setCoordSystem(frame.location, frame.direction, frame.up, frame.normal);
    addOutline(fonts::mtextPath(record), sink.toDisplay() * placement, sink);
}

// The stored text a TEXT-like record shows (group 1, or an attribute definition's tag, group 2).
std::string storedText(const KcDbText& text, int code) {
    const db::geometry::EntityTags tags(db::ObjectAccess::record(text));
    const db::Tag* shown = tags.first(code);
    return shown && shown->kind == db::TagKind::String ? shown->text : std::string();
}

}  // namespace

bool addTextShapes(const KcDbEntity& entity, WmfSceneBuilder::Sink& sink) {
    if (const auto* mtext = KcDbMText::cast(&entity)) {
        addMText(*mtext, sink);
        return true;
    }
    if (const auto* definition = KcDbAttributeDefinition::cast(&entity)) {
        // At the top level a definition shows its tag; inside a block only a
        // constant one shows, with its value, as a reference displays it.
        if (sink.topLevel()) addSingleLineText(*definition, storedText(*definition, 2), sink);
        else if (definition->isConstant() && !definition->isInvisible()) addSingleLineText(*definition, storedText(*definition, 1), sink);
        return true;
    }
    if (const auto* attribute = KcDbAttribute::cast(&entity)) {
        if (!attribute->isInvisible()) addSingleLineText(*attribute, storedText(*attribute, 1), sink);
        return true;
    }
    if (const auto* text = KcDbText::cast(&entity)) {
        addSingleLineText(*text, storedText(*text, 1), sink);
        return true;
    }
    return false;
}

}  // namespace korva::commands::wmf
