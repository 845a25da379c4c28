// FlatShape: an entity as the screen shows it, flattened into display
// coordinates (the view's plane): chains of points (polylines, arcs and curves
// cut into short chords), the filled regions some chains bound (solids, text
// boxes, hatches, where a pick inside counts), and infinite lines and rays.
// Picks and window, polygon and fence selections all test these.
#pragma once

#include <cstdint>
#include <algorithm>
#include <vector>

namespace korva::editor {

struct Point2 {
    double x = 0.0;
    double y = 0.0;
};

struct Rect2 {
    double minX = 0.0, minY = 0.0, maxX = 0.0, maxY = 0.0;

    static Rect2 around(const Point2& a, const Point2& b) {
        return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
    }
    bool contains(const Point2& p) const { return p.x >= minX && p.x <= maxX && p.y >= minY && p.y <= maxY; }
    bool contains(const Rect2& r) const { return r.minX >= minX && r.maxX <= maxX && r.minY >= minY && r.maxY <= maxY; }
    bool intersects(const Rect2& r) const { return r.minX <= maxX && r.maxX >= minX && r.minY <= maxY && r.maxY >= minY; }
    Rect2 expanded(double margin) const { return {minX - margin, minY - margin, maxX + margin, maxY + margin}; }
};

struct FlatShape {
    struct Chain {
        uint32_t first = 0;
        uint32_t count = 0;
        bool closed = false;
        int area = -1;  // the filled region this chain bounds, or -1
    };
    struct Line {
        Point2 base;
        Point2 direction;
        bool ray = false;  // a ray runs from base along direction only
    };

    std::vector<Point2> points;
    std::vector<Chain> chains;
    std::vector<Line> lines;
    int areaCount = 0;

    bool empty() const { return points.empty() && lines.empty(); }
    void clear() {
        points.clear();
        chains.clear();
        lines.clear();
        areaCount = 0;
    }
};

}  // namespace korva::editor
