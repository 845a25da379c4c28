// ShapeBuilder: draws world (or block) geometry into a FlatShape through a
// matrix to display coordinates. Curves become chords fine enough that no
// point of the true curve lies farther than the tolerance from them, so a pick
// on a large circle is not lost between two chords.
#pragma once

#include <vector>

#include "editor/selection/FlatShape.h"
#include "geom/Box3d.h"
#include "kcge.h"

namespace korva::editor {

class ShapeBuilder {
public:
    // toDisplay maps the geometry's coordinates to display coordinates; tolerance is in display units.
    ShapeBuilder(FlatShape& shape, const KcGeMatrix3d& toDisplay, double tolerance);

    // A chain of points; filled: it bounds a region of the given group (see beginArea).
    void beginChain();
    void point(const KcGePoint3d& p);
    void endChain(bool closed);
    // Starts a filled region; the chains ended with endAreaChain bound it (even-odd).
    int beginArea() { return shape_.areaCount++; }
    void endAreaChain(int area);

    // A whole polyline or polygon.
    void polyline(const std::vector<KcGePoint3d>& points, bool closed);
    void polygonArea(const std::vector<KcGePoint3d>& points);
    // c + u cos t + v sin t for t from start to end (end < start runs clockwise),
    // appended to the open chain.
    void trigCurve(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start, double end);
    // The NURBS curve sampled over its domain, appended to the open chain.
    void nurbs(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
               const std::vector<double>& weights);
    void infiniteLine(const KcGePoint3d& base, const KcGeVector3d& direction, bool ray);
    // The twelve edges of a box (entities whose outline is not known otherwise).
    void boxEdges(const geom::Box3d& box);

    const KcGeMatrix3d& toDisplay() const { return toDisplay_; }
    double tolerance() const { return tolerance_; }

private:
    Point2 flat(const KcGePoint3d& p) const;

    FlatShape& shape_;
    KcGeMatrix3d toDisplay_;
    double tolerance_;
    size_t chainStart_ = 0;
};

}  // namespace korva::editor
