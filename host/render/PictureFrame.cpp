// Choosing the space to draw and fitting its extents into the picture. The
// extents are those of the top-level entities that show (db/EntityGeometry.h
// measures each, references and texts included; rays and construction lines
// have none); an empty space gets a small square around the origin.
#include <algorithm>
#include <cmath>

#include "db/EntityGeometry.h"
#include "render/EntityStyle.h"
#include "render/RenderDrawing.h"

namespace korva::render {

namespace {

constexpr int kShortestLongSide = 16;
constexpr int kLongestLongSide = 16384;

bool isFiniteBox(const geom::Box3d& box) {
    return !box.isEmpty() && std::isfinite(box.min().x) && std::isfinite(box.min().y) && std::isfinite(box.max().x) &&
           std::isfinite(box.max().y);
}

// The x, y box of what shows in a space.
geom::Box3d shownExtents(const db::Drawing& drawing, const db::ObjectRecord& space, const RenderOptions& options) {
    StyleResolver styles(drawing, options);
    const Inheritance top = styles.topLevel();
    geom::Box3d extents;
    if (!space.container) return extents;
    for (const db::ObjectRecord* entity : space.container->members) {
        if (entity->erased) continue;
        const Visibility visibility = styles.resolve(*entity, top).visibility;
        const bool shows = visibility == Visibility::Shown ||
                           (visibility == Visibility::LayerOff && entity->type == db::Type::Insert) ||
                           entity->type == db::Type::Viewport;
        geom::Box3d box;
        if (shows && db::entityExtents(*entity, box) && isFiniteBox(box)) extents.add(box);
    }
    return extents;
}

std::string checkOptions(const RenderOptions& options) {
    if (options.longSide < kShortestLongSide || options.longSide > kLongestLongSide) {
        return "the picture's long side must be " + std::to_string(kShortestLongSide) + " to " +
               std::to_string(kLongestLongSide) + " pixels, not " + std::to_string(options.longSide);
    }
    if (!(options.dotsPerInch >= 1.0 && options.dotsPerInch <= 10000.0)) return "the resolution must be 1 to 10000 dpi";
    if (!(options.marginFraction >= 0.0 && options.marginFraction < 0.45)) return "the margin must be 0 to 0.45";
    return {};
}

// The space the options ask for: model space, or the current layout's paper space.
const db::ObjectRecord* chosenSpace(const db::Drawing& drawing, PictureSpace space, bool& layout) {
    if (space == PictureSpace::Current) {
        space = drawing.header.getInteger("$TILEMODE").value_or(1) == 1 ? PictureSpace::Model : PictureSpace::Layout;
    }
    layout = space == PictureSpace::Layout && drawing.paperSpace();
    return layout ? drawing.paperSpace() : drawing.modelSpace();
}

}  // namespace

std::optional<PictureFrame> framePicture(const db::Drawing& drawing, const RenderOptions& options, std::string& error) {
    error = checkOptions(options);
    if (!error.empty()) return std::nullopt;
    PictureFrame frame;
    frame.space = chosenSpace(drawing, options.space, frame.layout);
    if (!frame.space) {
        error = "the drawing has no model space";
        return std::nullopt;
    }
    geom::Box3d box = shownExtents(drawing, *frame.space, options);
    if (box.isEmpty()) box = geom::Box3d({-1.0, -1.0, 0.0}, {1.0, 1.0, 0.0});
    double width = box.max().x - box.min().x, height = box.max().y - box.min().y;
    const double longer = std::max(width, height);
    if (!(longer > 0.0)) {
        // A single point: a unit square around it.
        box = geom::Box3d(box.min() - KcGeVector3d(0.5, 0.5, 0.0), box.min() + KcGeVector3d(0.5, 0.5, 0.0));
        width = height = 1.0;
    }
    const int margin = static_cast<int>(std::lround(options.longSide * options.marginFraction));
    const int inside = std::max(1, options.longSide - 2 * margin);
    const double scale = inside / std::max(width, height);
    frame.width = width >= height ? options.longSide
                                  : std::max(1, static_cast<int>(std::ceil(width * scale)) + 2 * margin);
    frame.height = height > width ? options.longSide
                                  : std::max(1, static_cast<int>(std::ceil(height * scale)) + 2 * margin);
    // Centred: x to the right, y up (pixels count down).
    const double dx = (frame.width - width * scale) / 2.0 - box.min().x * scale;
    const double dy = (frame.height + height * scale) / 2.0 + box.min().y * scale;
    frame.viewToPicture = QTransform(scale, 0.0, 0.0, -scale, dx, dy);
    return frame;
}

}  // namespace korva::render
