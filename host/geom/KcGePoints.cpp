// KcGePoint2d and KcGePoint3d: positions. Points compare by distance, not per
// component, so the tolerance is a radius around the point.
#include "kcge.h"

#include <cmath>

const KcGePoint2d KcGePoint2d::kOrigin(0.0, 0.0);
const KcGePoint3d KcGePoint3d::kOrigin(0.0, 0.0, 0.0);

double KcGePoint2d::distanceTo(const KcGePoint2d& p) const { return (*this - p).length(); }

bool KcGePoint2d::isEqualTo(const KcGePoint2d& p, const KcGeTol& tol) const {
    return distanceTo(p) <= tol.equalPoint();
}

double KcGePoint3d::distanceTo(const KcGePoint3d& p) const { return (*this - p).length(); }

bool KcGePoint3d::isEqualTo(const KcGePoint3d& p, const KcGeTol& tol) const {
    return distanceTo(p) <= tol.equalPoint();
}

KcGePoint3d& KcGePoint3d::transformBy(const KcGeMatrix3d& m) {
    *this = m * *this;
    return *this;
}
