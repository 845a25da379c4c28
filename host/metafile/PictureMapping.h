// PictureMapping: how a picture's logical coordinates become the drawing
// units of the block WMFIN makes. The window origin goes to the block's base
// point; y grows down in the picture and up in the drawing. The size is chosen
// so that inserting the block at scale 2 gives back the size WMFOUT wrote:
//
//  1. A scale comment (ScaleComment.h): k logical units per drawing unit, so
//     a logical unit is 1 / (2k) drawing units in the block.
//  2. Otherwise the placeable header's units per inch, and otherwise the map
//     mode's (0.1 mm, 0.01 mm, 0.01 inch, 0.001 inch, 1/1440 inch; 96 pixels
//     per inch for the text mode; 1440 for the isotropic and anisotropic modes,
//     which give no size of their own), with one inch becoming one drawing unit
//     at scale 2: a logical unit is 1 / (2 units per inch) drawing units.
//
// The metric and English map modes have y growing up already. In the
// isotropic and anisotropic modes a negative window extent turns its axis,
// and with a placeable header the window is stretched over its box, as
// players show it.
// Without a window origin the placeable header's top-left corner is the base
// point, and without either the logical origin.
#pragma once

#include "metafile/MetafilePicture.h"

namespace korva::metafile {

struct PictureMapping {
    enum class Source { ScaleComment, PlaceableHeader, MapMode };

    double originX = 0.0;  // the logical point at the base point
    double originY = 0.0;
    double scaleX = 1.0;   // drawing units per logical unit, with the axis direction's sign
    double scaleY = -1.0;
    Source source = Source::MapMode;

    LogicalPoint toDrawing(const LogicalPoint& p) const { return {(p.x - originX) * scaleX, (p.y - originY) * scaleY}; }
};

PictureMapping pictureMapping(const MetafilePicture& picture);

// Logical units per inch of a map mode (the text, isotropic and anisotropic modes as above).
double mapModeUnitsPerInch(MapMode mode);
bool mapModeHasYUp(MapMode mode);

}  // namespace korva::metafile
