// The OCS-to-OCS map of a transformation. The new normal comes from the cofactor
// of the linear part (normals transform by the inverse transpose), signed by the
// determinant, so that it is defined even for a matrix that flattens z.
#include "db/geometry/PlaneMap.h"

#include <algorithm>
#include <cmath>

#include "geom/Angles.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

KcGeVector3d column(const KcGeMatrix3d& m, int c) { return {m.entry[0][c], m.entry[1][c], m.entry[2][c]}; }

double linearDeterminant(const KcGeMatrix3d& m) {
    return column(m, 0).dotProduct(column(m, 1).crossProduct(column(m, 2)));
}

bool sameLengthAndPerpendicular(const KcGeVector3d& a, const KcGeVector3d& b) {
    const double aa = a.lengthSqrd(), bb = b.lengthSqrd();
    const double reference = std::max(aa, bb);
    if (reference == 0.0) return true;
    constexpr double kRelative = 1e-9;
    return std::abs(aa - bb) <= kRelative * reference && std::abs(a.dotProduct(b)) <= kRelative * reference;
}

double largestColumn(const KcGeMatrix3d& m) {
    return std::max({column(m, 0).length(), column(m, 1).length(), column(m, 2).length()});
}

}  // namespace

KcGeVector3d cleanUnit(const KcGeVector3d& v) {
    KcGeVector3d unit = v.normal();
    for (int i = 0; i < 3; ++i) {
        if (std::abs(unit[i]) < 1e-12) unit[i] = 0.0;
    }
    return unit.normal();
}

KcGeVector3d transformedNormal(const KcGeMatrix3d& m, const KcGeVector3d& normal) {
    const geom::OcsAxes axes = geom::ocsAxes(normal);
    KcGeVector3d n = (m * axes.x).crossProduct(m * axes.y);
    if (linearDeterminant(m) < 0.0) n = -n;
    if (n.isZeroLength()) return axes.z;  // the plane collapsed to a line: keep the old extrusion
    return cleanUnit(n);
}

bool isDegenerate(const KcGeMatrix3d& m) {
    const double size = largestColumn(m);
    if (size == 0.0) return true;
    const double tolerance = 1e-12 * size * size;
    const KcGeVector3d x = column(m, 0), y = column(m, 1), z = column(m, 2);
    return x.crossProduct(y).length() <= tolerance && y.crossProduct(z).length() <= tolerance &&
           x.crossProduct(z).length() <= tolerance;
}

bool isConformal(const KcGeMatrix3d& m) {
    const KcGeVector3d x = column(m, 0), y = column(m, 1), z = column(m, 2);
    return sameLengthAndPerpendicular(x, y) && sameLengthAndPerpendicular(y, z) && sameLengthAndPerpendicular(x, z);
}

PlaneMap::PlaneMap(const KcGeMatrix3d& m, const KcGeVector3d& oldNormal)
    : oldNormal_(oldNormal.isZeroLength() ? KcGeVector3d::kZAxis : oldNormal.normal()),
      newNormal_(transformedNormal(m, oldNormal_)) {
    ocsMap_ = KcGeMatrix3d::worldToPlane(newNormal_) * m * KcGeMatrix3d::planeToWorld(oldNormal_);
    const KcGeVector3d u = ocsMap_ * KcGeVector3d::kXAxis;
    const KcGeVector3d v = ocsMap_ * KcGeVector3d::kYAxis;
    const double det = u.x * v.y - u.y * v.x;
    mirrored_ = det < 0.0;
    conformal_ = sameLengthAndPerpendicular(KcGeVector3d(u.x, u.y, 0), KcGeVector3d(v.x, v.y, 0));
    scale_ = std::sqrt(std::abs(det));
    degenerate_ = scale_ <= 1e-12 * std::max(1e-300, largestColumn(m));
    thicknessFactor_ = (m * oldNormal_).dotProduct(newNormal_);
}

double PlaneMap::angle(double radians) const {
    const KcGeVector3d d = vector({std::cos(radians), std::sin(radians), 0.0});
    return geom::normalizeAngle(std::atan2(d.y, d.x));
}

}  // namespace korva::db::geometry
