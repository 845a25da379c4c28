// The scale rule of imported pictures.
#include "metafile/PictureMapping.h"

#include <cmath>
#include <cstdlib>

#include "metafile/ScaleComment.h"

namespace korva::metafile {

double mapModeUnitsPerInch(MapMode mode) {
    switch (mode) {
        case MapMode::LowMetric: return 254.0;
        case MapMode::HighMetric: return 2540.0;
        case MapMode::LowEnglish: return 100.0;
        case MapMode::HighEnglish: return 1000.0;
        case MapMode::Twips: return 1440.0;
        case MapMode::Text: return 96.0;
        default: return 1440.0;
    }
}

bool mapModeHasYUp(MapMode mode) {
    switch (mode) {
        case MapMode::LowMetric:
        case MapMode::HighMetric:
        case MapMode::LowEnglish:
        case MapMode::HighEnglish:
        case MapMode::Twips:
            return true;
        default:
            return false;
    }
}

PictureMapping pictureMapping(const MetafilePicture& picture) {
    PictureMapping mapping;
    if (picture.windowOrigin) {
        mapping.originX = picture.windowOrigin->x;
        mapping.originY = picture.windowOrigin->y;
    } else if (picture.placeable) {
        mapping.originX = picture.placeable->boundingBox.left;
        mapping.originY = picture.placeable->boundingBox.top;
    }
    if (const auto comment = findScaleComment(picture)) {
        // WMFOUT writes y down in the anisotropic mode with positive extents.
        mapping.source = PictureMapping::Source::ScaleComment;
        mapping.scaleX = 1.0 / (2.0 * comment->unitsPerDrawingUnit);
        mapping.scaleY = -mapping.scaleX;
        return mapping;
    }
    double unitsPerInch = mapModeUnitsPerInch(picture.mapMode);
    mapping.source = PictureMapping::Source::MapMode;
    if (picture.placeable) {
        unitsPerInch = picture.placeable->unitsPerInch;
        mapping.source = PictureMapping::Source::PlaceableHeader;
    }
    // One inch is one drawing unit at scale 2.
    double unitX = 1.0 / (2.0 * unitsPerInch), unitY = unitX;
    double signX = 1.0, signY = mapModeHasYUp(picture.mapMode) ? 1.0 : -1.0;
    const bool scalable = picture.mapMode == MapMode::Isotropic || picture.mapMode == MapMode::Anisotropic;
    if (scalable && picture.windowExtent) {
        const PointS extent = *picture.windowExtent;
        if (extent.x < 0) signX = -signX;
        if (extent.y < 0) signY = -signY;
        // A player stretches the window over the placeable box.
        if (picture.placeable && extent.x != 0 && extent.y != 0) {
            const RectS& box = picture.placeable->boundingBox;
            const double boxWidth = std::abs(box.right - box.left), boxHeight = std::abs(box.bottom - box.top);
            if (boxWidth > 0 && boxHeight > 0) {
                unitX *= boxWidth / std::abs(extent.x);
                unitY *= boxHeight / std::abs(extent.y);
            }
        }
    }
    mapping.scaleX = unitX * signX;
    mapping.scaleY = unitY * signY;
    return mapping;
}

}  // namespace korva::metafile
