// Text boxes and MTEXT frames. Texts are measured by korva::db::measureText, so
// extents follow whatever measurer the host installed (real fonts, or the estimate).
#include "db/geometry/TextGeometry.h"

#include <algorithm>
#include <cmath>

#include "db/geometry/EntityTags.h"
#include "db/geometry/MTextLayout.h"
#include "geom/Angles.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

// The text a TEXT-like record shows: ATTDEF shows its tag, the others their value.
std::string_view shownText(const ObjectRecord& text, const EntityTags& tags) {
    const Tag* shown = tags.first(text.type == Type::AttDef ? 2 : 1);
    return shown && shown->kind == TagKind::String ? std::string_view(shown->text) : std::string_view();
}

}  // namespace

std::array<KcGePoint3d, 4> singleLineTextCorners(const ObjectRecord& text) {
    const EntityTags tags(text);
    const KcGePoint3d position = tags.point(10);
    const KcGeVector3d normal = tags.normal();
    const TextBox box = orientedTextBox(measureText(shownText(text, tags), textStyleOf(text)), tags.integer(71, 0));
    const double rotation = geom::degreesToRadians(tags.real(50, 0.0));
    const KcGeVector3d along(std::cos(rotation), std::sin(rotation), 0.0);
    const KcGeVector3d up(-along.y, along.x, 0.0);
    auto corner = [&](double x, double y) { return geom::ocsToWcs(position + along * x + up * y, normal); };
    return {corner(box.left, box.bottom), corner(box.right, box.bottom), corner(box.right, box.top),
            corner(box.left, box.top)};
}

MTextFrame mtextFrame(const ObjectRecord& mtext) {
    const EntityTags tags(mtext);
    MTextFrame frame;
    frame.location = tags.point(10);
    frame.normal = tags.normal().normal();
    KcGeVector3d direction;
    if (const Tag* d = tags.first(11); d && d->isPoint()) {
        direction = d->pointValue().asVector();
        direction -= frame.normal * direction.dotProduct(frame.normal);
    }
    if (direction.isZeroLength()) {
        const double rotation = tags.real(50, 0.0);
        direction = geom::ocsToWcs(KcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0), frame.normal);
    }
    frame.direction = direction.normal();
    frame.up = frame.normal.crossProduct(frame.direction).normal();
    return frame;
}

std::array<KcGePoint3d, 4> mtextCorners(const ObjectRecord& mtext) {
    const MTextFrame frame = mtextFrame(mtext);
    const MTextLayout layout = layoutMText(mtext);
    const double left = layout.left, top = layout.top;
    auto corner = [&](double x, double y) { return frame.location + frame.direction * x + frame.up * y; };
    return {corner(left, top - layout.height), corner(left + layout.width, top - layout.height),
            corner(left + layout.width, top), corner(left, top)};
}

}  // namespace korva::db::geometry
