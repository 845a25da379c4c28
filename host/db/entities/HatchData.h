// The repeated data of a HATCH read in stored order: boundary paths (91 count;
// per path 92 type, then a polyline 72/73/93 with 10 and 42 per vertex, or 93
// edges of type 72: 1 line 10-11, 2 arc 10/40/50/51/73, 3 ellipse
// 10/11/40/50/51/73, 4 spline 94/73/74/95/96 with 40 knots, 10 control points
// (42 weights), 97 fit points 11, 12/13 tangents; then 97 source boundary
// count and its 330s), then 75 style, 76 pattern type, 52 angle, 41 scale,
// 77 double, 78 pattern lines (53 angle, 43/44 base, 45/46 offset, 79 dash
// count and 49 dashes). Private to host/db/entities.
#pragma once

#include <cstdint>
#include <vector>

#include "db/ObjectRecord.h"
#include "kcge.h"

namespace korva::db {

struct HatchLoop {
    int32_t type = 0;  // group 92: 1 external, 2 polyline, 4 derived, 8 text box, 16 outermost
    // Polyline loops: their vertices and bulges. Edge loops: the start point of
    // each edge, with the bulge of arcs (other curves as straight segments).
    std::vector<KcGePoint2d> vertices;
    std::vector<double> bulges;
};

struct HatchPatternLine {
    double angleDegrees = 0.0;
    double baseX = 0.0, baseY = 0.0;
    double offsetX = 0.0, offsetY = 0.0;
    std::vector<double> dashes;
};

struct HatchData {
    std::vector<HatchLoop> loops;
    std::vector<HatchPatternLine> patternLines;
};

// What the tags hold; parsing stops quietly at the first group out of place.
HatchData readHatchData(const ObjectRecord& hatch);

}  // namespace korva::db
