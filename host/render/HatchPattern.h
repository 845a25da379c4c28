// The lines of a hatch pattern, cut to the hatch's boundary. Each pattern line
// is a family of parallel lines through base + k offset (k any integer) at an
// angle, dashed by its pattern (dashes positive, gaps negative, dots 0, from the
// base point on). The values are those the HATCH stores, already scaled and
// turned by the pattern's scale and angle, in the hatch's OCS plane.
//
// The cutting happens in picture pixels: a line is intersected with the
// boundary's flattened loops and keeps the stretches inside by the even-odd
// rule (islands stay open). A line's parameter along its direction is the same
// in the plane and in the picture (the map is affine), so dashes are laid out
// in plane units and cut in pixels.
#pragma once

#include <QPainterPath>
#include <QTransform>

#include <vector>

namespace korva::render {

struct PatternLine {
    double angle = 0.0;  // radians
    QPointF base;
    QPointF offset;
    std::vector<double> dashes;
};

enum class PatternResult {
    Drawn,     // the strokes are in `strokes`
    TooDense,  // the lines would lie closer than a pixel or be too many: the area reads as filled
    Empty,     // no usable pattern lines
};

// The dashes inside the boundary (plane coordinates, even-odd), as picture line segments.
PatternResult patternStrokes(const std::vector<PatternLine>& lines, const QPainterPath& boundary,
                             const QTransform& planeToPicture, QPainterPath& strokes);

}  // namespace korva::render
