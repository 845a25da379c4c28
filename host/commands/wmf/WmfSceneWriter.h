// Writing a scene as a metafile. Logical coordinates run from the view's
// upper-left corner, x to the right and y down, at k logical units per drawing
// unit: k is chosen so that the extents of the scene and the corner together
// fill the 16-bit range (about 65532 units across the larger side), with the
// range centred on the logical origin. The window origin is the corner (so a
// reader puts the corner at the picture's base point), the window extent and
// the placeable box reach to the far side of the scene, and a scale comment
// (metafile/ScaleComment.h) records k and the corner as doubles. For other
// readers the placeable header gives k (rounded, 1-65535) units per inch: one
// drawing unit shows as one inch, the size WMFIN gives such a file at scale 2.
//
// Records: the anisotropic map mode, window origin and extent, the comment,
// the fill rule, then the shapes, with a solid pen and brush of each shape's
// colour: open paths as POLYLINE (MOVETO and LINETO for single lines), closed
// outlines as POLYLINE back to their first point, filled shapes as POLYGON or
// POLYPOLYGON (one record per shape, so that holes stay holes), points as SETPIXEL.
#pragma once

#include <cstdint>
#include <vector>

#include "commands/wmf/WmfScene.h"

namespace korva::commands::wmf {

struct WrittenMetafile {
    std::vector<uint8_t> bytes;
    double unitsPerDrawingUnit = 1.0;  // k
};

// cornerX, cornerY: the view's upper-left corner in display coordinates.
WrittenMetafile writeSceneMetafile(const Scene& scene, double cornerX, double cornerY);

// k for a box of display coordinates (x and y from the corner, y down) that includes the corner.
double unitsPerDrawingUnitFor(double width, double height);

}  // namespace korva::commands::wmf
