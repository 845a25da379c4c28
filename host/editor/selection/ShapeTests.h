// The tests of selection on flattened shapes: the distance of a pick point,
// and whether a shape lies inside, or crosses, a window, a polygon or a fence.
// A point on a boundary counts as inside.
#pragma once

#include <vector>

#include "editor/selection/FlatShape.h"

namespace korva::editor {

// Distance from p to the nearest part of the shape; 0 inside a filled region.
double distanceTo(const FlatShape& shape, const Point2& p);

// Every point of the shape inside (an empty shape or an infinite line is never inside).
bool insidePolygon(const FlatShape& shape, const std::vector<Point2>& polygon);
// Some part of the shape inside, or crossing the boundary, or the polygon inside a filled region.
bool crossesPolygon(const FlatShape& shape, const std::vector<Point2>& polygon);
// Some part of the shape meets the open polyline.
bool crossesFence(const FlatShape& shape, const std::vector<Point2>& fence);

std::vector<Point2> rectanglePolygon(const Rect2& rect);
bool pointInPolygon(const Point2& p, const std::vector<Point2>& polygon);
Rect2 boundsOf(const std::vector<Point2>& points);

}  // namespace korva::editor
