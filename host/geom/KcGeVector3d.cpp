// KcGeVector3d: directions and displacements. Direction tests (parallel, perpendicular)
// work on unit vectors so that one tolerance serves vectors of any length.
#include "kcge.h"

#include <cmath>

#include "geom/Angles.h"
#include "geom/Ocs.h"

const KcGeVector3d KcGeVector3d::kIdentity(0.0, 0.0, 0.0);
const KcGeVector3d KcGeVector3d::kXAxis(1.0, 0.0, 0.0);
const KcGeVector3d KcGeVector3d::kYAxis(0.0, 1.0, 0.0);
const KcGeVector3d KcGeVector3d::kZAxis(0.0, 0.0, 1.0);

double KcGeVector3d::length() const { return std::sqrt(lengthSqrd()); }

KcGeVector3d KcGeVector3d::normal(const KcGeTol& tol) const {
    double len = length();
    if (len <= tol.equalVector()) return kIdentity;
    return *this / len;
}

KcGeVector3d& KcGeVector3d::normalize(const KcGeTol& tol) {
    *this = normal(tol);
    return *this;
}

KcGeVector3d KcGeVector3d::perpVector() const { return korva::geom::arbitraryXAxis(*this); }

bool KcGeVector3d::isZeroLength(const KcGeTol& tol) const { return length() <= tol.equalVector(); }

bool KcGeVector3d::isUnitLength(const KcGeTol& tol) const {
    return std::abs(length() - 1.0) <= tol.equalVector();
}

bool KcGeVector3d::isParallelTo(const KcGeVector3d& v, const KcGeTol& tol) const {
    if (isZeroLength(tol) || v.isZeroLength(tol)) return false;
    return normal(tol).crossProduct(v.normal(tol)).length() <= tol.equalVector();
}

bool KcGeVector3d::isCodirectionalTo(const KcGeVector3d& v, const KcGeTol& tol) const {
    return isParallelTo(v, tol) && dotProduct(v) > 0.0;
}

bool KcGeVector3d::isPerpendicularTo(const KcGeVector3d& v, const KcGeTol& tol) const {
    if (isZeroLength(tol) || v.isZeroLength(tol)) return false;
    return std::abs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
}

bool KcGeVector3d::isEqualTo(const KcGeVector3d& v, const KcGeTol& tol) const {
    return std::abs(x - v.x) <= tol.equalVector() && std::abs(y - v.y) <= tol.equalVector() &&
           std::abs(z - v.z) <= tol.equalVector();
}

double KcGeVector3d::angleTo(const KcGeVector3d& v) const {
    // atan2 of sine and cosine stays accurate near 0 and pi, where acos does not.
    return std::atan2(crossProduct(v).length(), dotProduct(v));
}

double KcGeVector3d::angleTo(const KcGeVector3d& v, const KcGeVector3d& reference) const {
    double angle = angleTo(v);
    if (crossProduct(v).dotProduct(reference) < 0.0) angle = korva::geom::kTwoPi - angle;
    return korva::geom::normalizeAngle(angle);
}

KcGeVector3d& KcGeVector3d::rotateBy(double angle, const KcGeVector3d& axis) {
    *this = KcGeMatrix3d::rotation(angle, axis) * *this;
    return *this;
}

KcGeVector3d& KcGeVector3d::transformBy(const KcGeMatrix3d& m) {
    *this = m * *this;
    return *this;
}
