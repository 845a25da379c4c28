// Box3d: an axis-aligned bounding box in world coordinates, the unit of entity extents.
// A default box is empty (min above max on every axis), so boxes can be grown point by
// point with no special first case.
#pragma once

#include <limits>

#include "kcge.h"

namespace korva::geom {

class Box3d {
public:
    Box3d() = default;
    // The box spanned by two opposite corners given in any order.
    Box3d(const KcGePoint3d& corner, const KcGePoint3d& oppositeCorner);

    bool isEmpty() const;
    // Meaningless (infinite) for an empty box.
    const KcGePoint3d& min() const { return m_min; }
    const KcGePoint3d& max() const { return m_max; }

    Box3d& add(const KcGePoint3d& point);
    Box3d& add(const Box3d& box);

    // The box around the eight transformed corners; it encloses the transformed box.
    Box3d transformedBy(const KcGeMatrix3d& matrix) const;
    // Both tests include the boundary; an empty box contains and touches nothing.
    bool contains(const KcGePoint3d& point) const;
    bool intersects(const Box3d& box) const;
    // Grows every side by margin; a negative margin that crosses the sides gives an empty box.
    Box3d expandedBy(double margin) const;

private:
    static constexpr double kInfinity = std::numeric_limits<double>::infinity();
    KcGePoint3d m_min{kInfinity, kInfinity, kInfinity};
    KcGePoint3d m_max{-kInfinity, -kInfinity, -kInfinity};
};

}  // namespace korva::geom
