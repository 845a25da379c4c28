// KcGeVector2d: planar directions, used for 2D polyline vertices and bulge arcs.
#include "kcge.h"

#include <cmath>

#include "geom/Angles.h"

const KcGeVector2d KcGeVector2d::kXAxis(1.0, 0.0);
const KcGeVector2d KcGeVector2d::kYAxis(0.0, 1.0);

double KcGeVector2d::length() const { return std::hypot(x, y); }

double KcGeVector2d::angle() const { return korva::geom::normalizeAngle(std::atan2(y, x)); }

KcGeVector2d KcGeVector2d::normal() const {
    double len = length();
    // Mirrors the 3D rule: a vector too short to have a direction stays zero.
    if (len <= KcGeContext::gTol.equalVector()) return {};
    return {x / len, y / len};
}

bool KcGeVector2d::isEqualTo(const KcGeVector2d& v, const KcGeTol& tol) const {
    return std::abs(x - v.x) <= tol.equalVector() && std::abs(y - v.y) <= tol.equalVector();
}
