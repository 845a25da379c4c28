// Box3d operations. Every operation works axis by axis; emptiness is encoded in the
// bounds themselves, so union and containment need no flags.
#include "geom/Box3d.h"

#include <algorithm>

namespace korva::geom {

Box3d::Box3d(const KcGePoint3d& corner, const KcGePoint3d& oppositeCorner) {
    add(corner);
    add(oppositeCorner);
}

bool Box3d::isEmpty() const { return m_min.x > m_max.x || m_min.y > m_max.y || m_min.z > m_max.z; }

Box3d& Box3d::add(const KcGePoint3d& point) {
    for (int axis = 0; axis < 3; ++axis) {
        m_min[axis] = std::min(m_min[axis], point[axis]);
        m_max[axis] = std::max(m_max[axis], point[axis]);
    }
    return *this;
}

Box3d& Box3d::add(const Box3d& box) {
    if (box.isEmpty()) return *this;
    add(box.m_min);
    return add(box.m_max);
}

Box3d Box3d::transformedBy(const KcGeMatrix3d& matrix) const {
    Box3d result;
    if (isEmpty()) return result;
    for (int corner = 0; corner < 8; ++corner) {
        KcGePoint3d point((corner & 1) ? m_max.x : m_min.x, (corner & 2) ? m_max.y : m_min.y,
                          (corner & 4) ? m_max.z : m_min.z);
        result.add(matrix * point);
    }
    return result;
}

bool Box3d::contains(const KcGePoint3d& point) const {
    for (int axis = 0; axis < 3; ++axis)
        if (point[axis] < m_min[axis] || point[axis] > m_max[axis]) return false;
    return !isEmpty();
}

bool Box3d::intersects(const Box3d& box) const {
    if (isEmpty() || box.isEmpty()) return false;
    for (int axis = 0; axis < 3; ++axis)
        if (box.m_max[axis] < m_min[axis] || box.m_min[axis] > m_max[axis]) return false;
    return true;
}

Box3d Box3d::expandedBy(double margin) const {
    if (isEmpty()) return {};
    KcGeVector3d grow(margin, margin, margin);
    Box3d result;
    result.m_min = m_min - grow;
    result.m_max = m_max + grow;
    return result.isEmpty() ? Box3d() : result;
}

}  // namespace korva::geom
