// Arbitrary-axis algorithm and OCS conversions. The axes are orthonormal, so the world
// to OCS direction is a transpose (three dot products) rather than a matrix inverse.
#include "geom/Ocs.h"

#include <cmath>

namespace korva::geom {
namespace {

// Below this, the normal is "close to" the world z axis and world y is used instead
// of world z to build the x axis, avoiding a near-zero cross product.
constexpr double kArbitraryAxisLimit = 1.0 / 64.0;

KcGeVector3d unitNormalOrWorldZ(const KcGeVector3d& normal) {
    KcGeVector3d unit = normal.normal();
    return unit.isZeroLength() ? KcGeVector3d::kZAxis : unit;
}

KcGeVector3d xAxisOfUnitNormal(const KcGeVector3d& n) {
    bool nearWorldZ = std::abs(n.x) < kArbitraryAxisLimit && std::abs(n.y) < kArbitraryAxisLimit;
    KcGeVector3d helper = nearWorldZ ? KcGeVector3d::kYAxis : KcGeVector3d::kZAxis;
    return helper.crossProduct(n).normal();
}

}  // namespace

OcsAxes ocsAxes(const KcGeVector3d& normal) {
    KcGeVector3d z = unitNormalOrWorldZ(normal);
    KcGeVector3d x = xAxisOfUnitNormal(z);
    return {x, z.crossProduct(x).normal(), z};
}

KcGeVector3d arbitraryXAxis(const KcGeVector3d& normal) { return ocsAxes(normal).x; }

KcGeVector3d ocsToWcs(const KcGeVector3d& vector, const KcGeVector3d& normal) {
    OcsAxes axes = ocsAxes(normal);
    return axes.x * vector.x + axes.y * vector.y + axes.z * vector.z;
}

KcGeVector3d wcsToOcs(const KcGeVector3d& vector, const KcGeVector3d& normal) {
    OcsAxes axes = ocsAxes(normal);
    return {axes.x.dotProduct(vector), axes.y.dotProduct(vector), axes.z.dotProduct(vector)};
}

KcGePoint3d ocsToWcs(const KcGePoint3d& point, const KcGeVector3d& normal) {
    return KcGePoint3d::kOrigin + ocsToWcs(point.asVector(), normal);
}

KcGePoint3d wcsToOcs(const KcGePoint3d& point, const KcGeVector3d& normal) {
    return KcGePoint3d::kOrigin + wcsToOcs(point.asVector(), normal);
}

}  // namespace korva::geom
