// The meaning of each tag of a HATCH. A hatch repeats the same group codes with
// different meanings (10 is the elevation point, a polyline vertex, a line start,
// an arc or ellipse centre, a spline control point or a seed point), so its tags
// are classified by walking the boundary paths, edges, pattern lines and seeds
// in the order the DXF format gives them.
#pragma once

#include <cstdint>
#include <vector>

#include "db/geometry/EntityTags.h"

namespace korva::db::geometry {

enum class HatchRole : uint8_t {
    None,
    Elevation,       // 10: (0, 0, elevation)
    PolylineVertex,  // 10 of a polyline path (2D, OCS)
    Bulge,           // 42 of a polyline path
    EdgePoint,       // 10/11 of a line edge, 10 centre of an arc or ellipse edge (2D, OCS)
    EllipseMajor,    // 11 of an ellipse edge: major axis end, relative to the centre
    ArcRadius,       // 40 of an arc edge
    EdgeStartAngle,  // 50 of an arc or ellipse edge (degrees)
    EdgeEndAngle,    // 51
    EdgeCounterClockwise,  // 73 of an arc or ellipse edge
    SplineControl,   // 10 of a spline edge
    SplineFit,       // 11 of a spline edge
    SplineTangent,   // 12, 13 of a spline edge
    PatternAngle,    // 52 (degrees)
    PatternScale,    // 41
    LineAngle,       // 53 of a pattern line (degrees)
    LineBaseX,       // 43, followed by 44
    LineOffsetX,     // 45, followed by 46
    LineDash,        // 49
    Seed,            // 10 of a seed point (2D, OCS)
};

// A run of tags that forms one piece of boundary.
struct HatchPiece {
    enum Kind { PolylinePath, LineEdge, ArcEdge, EllipseEdge, SplineEdge } kind;
    size_t begin;  // first tag index (after the 92 or 72 that opens it)
    size_t end;    // one past the last tag
    bool closed = false;  // polyline paths
};

struct HatchLayout {
    std::vector<HatchRole> roles;  // one per tag
    std::vector<HatchPiece> pieces;
};

HatchLayout layoutHatch(const EntityTags& tags);

}  // namespace korva::db::geometry
