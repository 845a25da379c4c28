// KcGeMatrix3d: 4x4 transformations acting on column vectors (p' = M * p), with the
// translation in column 3. Builders compose a 3x3 linear part with a fixed centre;
// inversion and singularity share one Gauss-Jordan elimination so they always agree.
#include "kcge.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geom/Ocs.h"

const KcGeMatrix3d KcGeMatrix3d::kIdentity;

namespace {

KcGeVector3d column(const KcGeMatrix3d& m, int col) {
    return {m.entry[0][col], m.entry[1][col], m.entry[2][col]};
}

void setColumn(KcGeMatrix3d& m, int col, const KcGeVector3d& v) {
    for (int row = 0; row < 3; ++row) m.entry[row][col] = v[row];
}

// Sets the translation so that the linear part acts about center: t = c - L * c.
void fixCenter(KcGeMatrix3d& m, const KcGePoint3d& center) {
    KcGeVector3d moved = m * center.asVector();
    setColumn(m, 3, center.asVector() - moved);
}

double largestInColumn(const KcGeMatrix3d& m, int col) {
    double largest = 0.0;
    for (int row = 0; row < 4; ++row) largest = std::max(largest, std::abs(m.entry[row][col]));
    return largest;
}

// Gauss-Jordan elimination with partial pivoting on [m | I]. A pivot counts as zero
// when it is at most relTol times the largest entry of its original column: scaling a
// column scales its pivots alike, so the verdict does not depend on units.
bool tryInvert(const KcGeMatrix3d& m, double relTol, KcGeMatrix3d& result) {
    double a[4][8];
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) {
            a[row][col] = m.entry[row][col];
            a[row][col + 4] = row == col ? 1.0 : 0.0;
        }
    for (int col = 0; col < 4; ++col) {
        int pivotRow = col;
        for (int row = col + 1; row < 4; ++row)
            if (std::abs(a[row][col]) > std::abs(a[pivotRow][col])) pivotRow = row;
        double pivot = a[pivotRow][col];
        if (pivot == 0.0 || std::abs(pivot) <= relTol * largestInColumn(m, col)) return false;
        std::swap(a[pivotRow], a[col]);
        for (double& value : a[col]) value /= pivot;
        for (int row = 0; row < 4; ++row) {
            if (row == col) continue;
            double factor = a[row][col];
            for (int k = 0; k < 8; ++k) a[row][k] -= factor * a[col][k];
        }
    }
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) result.entry[row][col] = a[row][col + 4];
    return true;
}

bool isAffine(const KcGeMatrix3d& m, const KcGeTol& tol) {
    return std::abs(m.entry[3][0]) <= tol.equalVector() && std::abs(m.entry[3][1]) <= tol.equalVector() &&
           std::abs(m.entry[3][2]) <= tol.equalVector() && std::abs(m.entry[3][3] - 1.0) <= tol.equalVector();
}

// Columns 0..2 are non-zero and mutually perpendicular, judged on their directions.
bool hasOrthogonalAxes(const KcGeMatrix3d& m, const KcGeTol& tol) {
    for (int i = 0; i < 3; ++i) {
        if (column(m, i).isZeroLength(tol)) return false;
        for (int j = i + 1; j < 3; ++j)
            if (!column(m, i).isPerpendicularTo(column(m, j), tol)) return false;
    }
    return true;
}

}  // namespace

KcGeMatrix3d::KcGeMatrix3d() { setToIdentity(); }

KcGeMatrix3d& KcGeMatrix3d::setToIdentity() {
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) entry[row][col] = row == col ? 1.0 : 0.0;
    return *this;
}

bool KcGeMatrix3d::isIdentity(const KcGeTol& tol) const { return isEqualTo(kIdentity, tol); }

bool KcGeMatrix3d::isEqualTo(const KcGeMatrix3d& m, const KcGeTol& tol) const {
    // The translation column holds positions, the rest unitless factors.
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) {
            double limit = (col == 3 && row < 3) ? tol.equalPoint() : tol.equalVector();
            if (std::abs(entry[row][col] - m.entry[row][col]) > limit) return false;
        }
    return true;
}

KcGeMatrix3d KcGeMatrix3d::operator*(const KcGeMatrix3d& m) const {
    KcGeMatrix3d result;
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) sum += entry[row][k] * m.entry[k][col];
            result.entry[row][col] = sum;
        }
    return result;
}

KcGeMatrix3d& KcGeMatrix3d::operator*=(const KcGeMatrix3d& m) { return postMultBy(m); }

KcGeMatrix3d& KcGeMatrix3d::preMultBy(const KcGeMatrix3d& left) {
    *this = left * *this;
    return *this;
}

KcGeMatrix3d& KcGeMatrix3d::postMultBy(const KcGeMatrix3d& right) {
    *this = *this * right;
    return *this;
}

KcGeMatrix3d& KcGeMatrix3d::setToProduct(const KcGeMatrix3d& a, const KcGeMatrix3d& b) {
    *this = a * b;  // the temporary makes aliasing (a or b being *this) harmless
    return *this;
}

KcGeMatrix3d KcGeMatrix3d::inverse() const {
    KcGeMatrix3d result;
    return tryInvert(*this, KcGeContext::gTol.equalVector(), result) ? result : *this;
}

KcGeMatrix3d& KcGeMatrix3d::invert() {
    *this = inverse();
    return *this;
}

bool KcGeMatrix3d::isSingular(const KcGeTol& tol) const {
    KcGeMatrix3d unused;
    return !tryInvert(*this, tol.equalVector(), unused);
}

KcGeMatrix3d& KcGeMatrix3d::transposeIt() {
    for (int row = 0; row < 4; ++row)
        for (int col = row + 1; col < 4; ++col) std::swap(entry[row][col], entry[col][row]);
    return *this;
}

KcGeMatrix3d KcGeMatrix3d::transpose() const {
    KcGeMatrix3d result = *this;
    return result.transposeIt();
}

double KcGeMatrix3d::det() const {
    // LU decomposition with partial pivoting: the product of the pivots, signed by swaps.
    double a[4][4];
    std::copy(&entry[0][0], &entry[0][0] + 16, &a[0][0]);
    double determinant = 1.0;
    for (int col = 0; col < 4; ++col) {
        int pivotRow = col;
        for (int row = col + 1; row < 4; ++row)
            if (std::abs(a[row][col]) > std::abs(a[pivotRow][col])) pivotRow = row;
        if (a[pivotRow][col] == 0.0) return 0.0;
        if (pivotRow != col) {
            std::swap(a[pivotRow], a[col]);
            determinant = -determinant;
        }
        determinant *= a[col][col];
        for (int row = col + 1; row < 4; ++row) {
            double factor = a[row][col] / a[col][col];
            for (int k = col; k < 4; ++k) a[row][k] -= factor * a[col][k];
        }
    }
    return determinant;
}

double KcGeMatrix3d::scale() const { return column(*this, 0).length(); }

bool KcGeMatrix3d::isScaledOrtho(const KcGeTol& tol) const {
    return isAffine(*this, tol) && hasOrthogonalAxes(*this, tol);
}

bool KcGeMatrix3d::isUniScaledOrtho(const KcGeTol& tol) const {
    if (!isScaledOrtho(tol)) return false;
    double xLength = column(*this, 0).length();
    double allowed = tol.equalVector() * xLength;  // relative, like the factors themselves
    return std::abs(column(*this, 1).length() - xLength) <= allowed &&
           std::abs(column(*this, 2).length() - xLength) <= allowed;
}

KcGeVector3d KcGeMatrix3d::translation() const { return column(*this, 3); }

KcGeMatrix3d& KcGeMatrix3d::setToTranslation(const KcGeVector3d& v) {
    setToIdentity();
    setColumn(*this, 3, v);
    return *this;
}

KcGeMatrix3d& KcGeMatrix3d::setToRotation(double angle, const KcGeVector3d& axis, const KcGePoint3d& center) {
    setToIdentity();
    KcGeVector3d u = axis.normal();
    if (u.isZeroLength()) return *this;  // no axis, no rotation
    // Rodrigues' rotation formula: R = cI + s[u]x + (1 - c) u u^T.
    double c = std::cos(angle), s = std::sin(angle), t = 1.0 - c;
    setColumn(*this, 0, {t * u.x * u.x + c, t * u.x * u.y + s * u.z, t * u.x * u.z - s * u.y});
    setColumn(*this, 1, {t * u.x * u.y - s * u.z, t * u.y * u.y + c, t * u.y * u.z + s * u.x});
    setColumn(*this, 2, {t * u.x * u.z + s * u.y, t * u.y * u.z - s * u.x, t * u.z * u.z + c});
    fixCenter(*this, center);
    return *this;
}

KcGeMatrix3d& KcGeMatrix3d::setToScaling(double scaleFactor, const KcGePoint3d& center) {
    return setToScaling(KcGeScale3d(scaleFactor), center);
}

KcGeMatrix3d& KcGeMatrix3d::setToScaling(const KcGeScale3d& scaleFactors, const KcGePoint3d& center) {
    setToIdentity();
    entry[0][0] = scaleFactors.sx;
    entry[1][1] = scaleFactors.sy;
    entry[2][2] = scaleFactors.sz;
    fixCenter(*this, center);
    return *this;
}

KcGeMatrix3d& KcGeMatrix3d::setToMirroring(const KcGePoint3d& pointOnPlane, const KcGeVector3d& planeNormal) {
    setToIdentity();
    KcGeVector3d n = planeNormal.normal();
    if (n.isZeroLength()) return *this;  // no plane, no reflection
    // Householder reflection I - 2 n n^T, about a plane through pointOnPlane.
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 3; ++col) entry[row][col] -= 2.0 * n[row] * n[col];
    fixCenter(*this, pointOnPlane);
    return *this;
}

KcGeMatrix3d& KcGeMatrix3d::setToMirroring(const KcGePoint3d& center) { return setToScaling(-1.0, center); }

KcGeMatrix3d& KcGeMatrix3d::setCoordSystem(const KcGePoint3d& origin, const KcGeVector3d& xAxis,
                                           const KcGeVector3d& yAxis, const KcGeVector3d& zAxis) {
    setToIdentity();
    setColumn(*this, 0, xAxis);
    setColumn(*this, 1, yAxis);
    setColumn(*this, 2, zAxis);
    setColumn(*this, 3, origin.asVector());
    return *this;
}

void KcGeMatrix3d::getCoordSystem(KcGePoint3d& origin, KcGeVector3d& xAxis, KcGeVector3d& yAxis,
                                  KcGeVector3d& zAxis) const {
    origin = KcGePoint3d::kOrigin + column(*this, 3);
    xAxis = column(*this, 0);
    yAxis = column(*this, 1);
    zAxis = column(*this, 2);
}

KcGeMatrix3d& KcGeMatrix3d::setToAlignCoordSys(const KcGePoint3d& fromOrigin, const KcGeVector3d& fromX,
                                               const KcGeVector3d& fromY, const KcGeVector3d& fromZ,
                                               const KcGePoint3d& toOrigin, const KcGeVector3d& toX,
                                               const KcGeVector3d& toY, const KcGeVector3d& toZ) {
    // World -> "from" coordinates, then "to" coordinates -> world.
    KcGeMatrix3d fromSystem, toSystem;
    fromSystem.setCoordSystem(fromOrigin, fromX, fromY, fromZ);
    toSystem.setCoordSystem(toOrigin, toX, toY, toZ);
    return setToProduct(toSystem, fromSystem.inverse());
}

KcGeMatrix3d& KcGeMatrix3d::setToPlaneToWorld(const KcGeVector3d& normal) {
    korva::geom::OcsAxes axes = korva::geom::ocsAxes(normal);
    return setCoordSystem(KcGePoint3d::kOrigin, axes.x, axes.y, axes.z);
}

KcGeMatrix3d& KcGeMatrix3d::setToWorldToPlane(const KcGeVector3d& normal) {
    // The OCS axes are orthonormal: the inverse is the transpose.
    return setToPlaneToWorld(normal).transposeIt();
}

KcGeMatrix3d KcGeMatrix3d::translation(const KcGeVector3d& v) { return KcGeMatrix3d().setToTranslation(v); }

KcGeMatrix3d KcGeMatrix3d::rotation(double angle, const KcGeVector3d& axis, const KcGePoint3d& center) {
    return KcGeMatrix3d().setToRotation(angle, axis, center);
}

KcGeMatrix3d KcGeMatrix3d::scaling(double scaleFactor, const KcGePoint3d& center) {
    return KcGeMatrix3d().setToScaling(scaleFactor, center);
}

KcGeMatrix3d KcGeMatrix3d::scaling(const KcGeScale3d& scaleFactors, const KcGePoint3d& center) {
    return KcGeMatrix3d().setToScaling(scaleFactors, center);
}

KcGeMatrix3d KcGeMatrix3d::mirroring(const KcGePoint3d& pointOnPlane, const KcGeVector3d& planeNormal) {
    return KcGeMatrix3d().setToMirroring(pointOnPlane, planeNormal);
}

KcGeMatrix3d KcGeMatrix3d::alignCoordSys(const KcGePoint3d& fromOrigin, const KcGeVector3d& fromX,
                                         const KcGeVector3d& fromY, const KcGeVector3d& fromZ,
                                         const KcGePoint3d& toOrigin, const KcGeVector3d& toX,
                                         const KcGeVector3d& toY, const KcGeVector3d& toZ) {
    return KcGeMatrix3d().setToAlignCoordSys(fromOrigin, fromX, fromY, fromZ, toOrigin, toX, toY, toZ);
}

KcGeMatrix3d KcGeMatrix3d::worldToPlane(const KcGeVector3d& normal) {
    return KcGeMatrix3d().setToWorldToPlane(normal);
}

KcGeMatrix3d KcGeMatrix3d::planeToWorld(const KcGeVector3d& normal) {
    return KcGeMatrix3d().setToPlaneToWorld(normal);
}
