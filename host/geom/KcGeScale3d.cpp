// KcGeScale3d: per-axis scale factors of block references. Factors are compared
// relative to their size, because a scale of 1000 carries no more absolute precision
// than a scale of 1.
#include "kcge.h"

#include <algorithm>
#include <cmath>

const KcGeScale3d KcGeScale3d::kIdentity(1.0, 1.0, 1.0);

namespace {

bool nearlyEqualFactors(double a, double b, const KcGeTol& tol) {
    double magnitude = std::max({1.0, std::abs(a), std::abs(b)});
    return std::abs(a - b) <= tol.equalVector() * magnitude;
}

}  // namespace

bool KcGeScale3d::isEqualTo(const KcGeScale3d& s, const KcGeTol& tol) const {
    return nearlyEqualFactors(sx, s.sx, tol) && nearlyEqualFactors(sy, s.sy, tol) &&
           nearlyEqualFactors(sz, s.sz, tol);
}

bool KcGeScale3d::isProportional(const KcGeTol& tol) const {
    return nearlyEqualFactors(sx, sy, tol) && nearlyEqualFactors(sx, sz, tol);
}
