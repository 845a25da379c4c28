// Geometry classes of the host API: tolerances, 2D and 3D points and vectors,
// scale factors and 4x4 transformation matrices.
#pragma once

#include "kcarray.h"

class KcGeMatrix3d;
class KcGeVector3d;

class KcGeTol {
public:
    KcGeTol() = default;
    double equalPoint() const { return m_equalPoint; }
    double equalVector() const { return m_equalVector; }
    void setEqualPoint(double value) { m_equalPoint = value; }
    void setEqualVector(double value) { m_equalVector = value; }

private:
    double m_equalPoint = 1e-10;
    double m_equalVector = 1e-12;
};

struct KcGeContext {
    static KcGeTol gTol;  // the global default tolerance
};

class KcGeVector2d {
public:
    double x = 0.0, y = 0.0;
    KcGeVector2d() = default;
    constexpr KcGeVector2d(double xx, double yy) : x(xx), y(yy) {}
    static const KcGeVector2d kXAxis;
    static const KcGeVector2d kYAxis;
    double length() const;
    double angle() const;  // angle to the x axis, 0 <= a < 2 pi
    double dotProduct(const KcGeVector2d& v) const { return x * v.x + y * v.y; }
    KcGeVector2d normal() const;
    bool isEqualTo(const KcGeVector2d& v, const KcGeTol& tol = KcGeContext::gTol) const;
    KcGeVector2d operator+(const KcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    KcGeVector2d operator-(const KcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    KcGeVector2d operator*(double s) const { return {x * s, y * s}; }
    KcGeVector2d operator-() const { return {-x, -y}; }
};

class KcGePoint2d {
public:
    double x = 0.0, y = 0.0;
    KcGePoint2d() = default;
    constexpr KcGePoint2d(double xx, double yy) : x(xx), y(yy) {}
    static const KcGePoint2d kOrigin;
    double distanceTo(const KcGePoint2d& p) const;
    bool isEqualTo(const KcGePoint2d& p, const KcGeTol& tol = KcGeContext::gTol) const;
    KcGePoint2d operator+(const KcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    KcGePoint2d operator-(const KcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    KcGeVector2d operator-(const KcGePoint2d& p) const { return {x - p.x, y - p.y}; }
    bool operator==(const KcGePoint2d& p) const { return x == p.x && y == p.y; }
    bool operator!=(const KcGePoint2d& p) const { return !(*this == p); }
};

class KcGeVector3d {
public:
    double x = 0.0, y = 0.0, z = 0.0;
    KcGeVector3d() = default;
    constexpr KcGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}
    static const KcGeVector3d kIdentity;  // the zero vector
    static const KcGeVector3d kXAxis;
    static const KcGeVector3d kYAxis;
    static const KcGeVector3d kZAxis;

    double length() const;
    double lengthSqrd() const { return x * x + y * y + z * z; }
    double dotProduct(const KcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    KcGeVector3d crossProduct(const KcGeVector3d& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    // A unit copy; the zero vector stays zero.
    KcGeVector3d normal(const KcGeTol& tol = KcGeContext::gTol) const;
    KcGeVector3d& normalize(const KcGeTol& tol = KcGeContext::gTol);
    // Any vector perpendicular to this one (the arbitrary-axis choice).
    KcGeVector3d perpVector() const;
    bool isZeroLength(const KcGeTol& tol = KcGeContext::gTol) const;
    bool isUnitLength(const KcGeTol& tol = KcGeContext::gTol) const;
    // A zero-length vector has no direction: it is neither parallel, codirectional
    // nor perpendicular to anything.
    bool isParallelTo(const KcGeVector3d& v, const KcGeTol& tol = KcGeContext::gTol) const;
    bool isCodirectionalTo(const KcGeVector3d& v, const KcGeTol& tol = KcGeContext::gTol) const;
    bool isPerpendicularTo(const KcGeVector3d& v, const KcGeTol& tol = KcGeContext::gTol) const;
    // Component-wise comparison within tol.equalVector().
    bool isEqualTo(const KcGeVector3d& v, const KcGeTol& tol = KcGeContext::gTol) const;
    // Angle in [0, pi].
    double angleTo(const KcGeVector3d& v) const;
    // Signed angle in [0, 2 pi) measured counter-clockwise about reference.
    double angleTo(const KcGeVector3d& v, const KcGeVector3d& reference) const;
    KcGeVector3d& rotateBy(double angle, const KcGeVector3d& axis);
    KcGeVector3d& transformBy(const KcGeMatrix3d& m);
    KcGeVector3d& set(double xx, double yy, double zz) { x = xx; y = yy; z = zz; return *this; }

    KcGeVector3d operator+(const KcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    KcGeVector3d operator-(const KcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    KcGeVector3d operator*(double s) const { return {x * s, y * s, z * s}; }
    KcGeVector3d operator/(double s) const { return {x / s, y / s, z / s}; }
    KcGeVector3d operator-() const { return {-x, -y, -z}; }
    KcGeVector3d& operator+=(const KcGeVector3d& v) { x += v.x; y += v.y; z += v.z; return *this; }
    KcGeVector3d& operator-=(const KcGeVector3d& v) { x -= v.x; y -= v.y; z -= v.z; return *this; }
    KcGeVector3d& operator*=(double s) { x *= s; y *= s; z *= s; return *this; }
    bool operator==(const KcGeVector3d& v) const { return x == v.x && y == v.y && z == v.z; }
    bool operator!=(const KcGeVector3d& v) const { return !(*this == v); }
    double operator[](int i) const { return i == 0 ? x : (i == 1 ? y : z); }
    double& operator[](int i) { return i == 0 ? x : (i == 1 ? y : z); }
};

inline KcGeVector3d operator*(double s, const KcGeVector3d& v) { return v * s; }

class KcGePoint3d {
public:
    double x = 0.0, y = 0.0, z = 0.0;
    KcGePoint3d() = default;
    constexpr KcGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}
    static const KcGePoint3d kOrigin;

    double distanceTo(const KcGePoint3d& p) const;
    // Distance within tol.equalPoint().
    bool isEqualTo(const KcGePoint3d& p, const KcGeTol& tol = KcGeContext::gTol) const;
    KcGePoint3d& transformBy(const KcGeMatrix3d& m);
    KcGeVector3d asVector() const { return {x, y, z}; }
    KcGePoint2d convert2d() const { return {x, y}; }
    KcGePoint3d& set(double xx, double yy, double zz) { x = xx; y = yy; z = zz; return *this; }

    KcGePoint3d operator+(const KcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    KcGePoint3d operator-(const KcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    KcGeVector3d operator-(const KcGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    KcGePoint3d& operator+=(const KcGeVector3d& v) { x += v.x; y += v.y; z += v.z; return *this; }
    KcGePoint3d& operator-=(const KcGeVector3d& v) { x -= v.x; y -= v.y; z -= v.z; return *this; }
    bool operator==(const KcGePoint3d& p) const { return x == p.x && y == p.y && z == p.z; }
    bool operator!=(const KcGePoint3d& p) const { return !(*this == p); }
    double operator[](int i) const { return i == 0 ? x : (i == 1 ? y : z); }
    double& operator[](int i) { return i == 0 ? x : (i == 1 ? y : z); }
};

class KcGeScale3d {
public:
    double sx = 1.0, sy = 1.0, sz = 1.0;
    KcGeScale3d() = default;
    constexpr explicit KcGeScale3d(double s) : sx(s), sy(s), sz(s) {}
    constexpr KcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}
    static const KcGeScale3d kIdentity;
    bool isEqualTo(const KcGeScale3d& s, const KcGeTol& tol = KcGeContext::gTol) const;
    bool isProportional(const KcGeTol& tol = KcGeContext::gTol) const;
    bool operator==(const KcGeScale3d& s) const { return sx == s.sx && sy == s.sy && sz == s.sz; }
    bool operator!=(const KcGeScale3d& s) const { return !(*this == s); }
};

// A 4x4 matrix acting on column vectors: p' = M * p. entry[row][col]; the last
// column holds the translation.
class KcGeMatrix3d {
public:
    double entry[4][4];

    KcGeMatrix3d();  // identity
    static const KcGeMatrix3d kIdentity;

    KcGeMatrix3d& setToIdentity();
    bool isIdentity(const KcGeTol& tol = KcGeContext::gTol) const;
    bool isEqualTo(const KcGeMatrix3d& m, const KcGeTol& tol = KcGeContext::gTol) const;
    double operator()(int row, int col) const { return entry[row][col]; }
    double& operator()(int row, int col) { return entry[row][col]; }

    KcGeMatrix3d operator*(const KcGeMatrix3d& m) const;
    KcGeMatrix3d& operator*=(const KcGeMatrix3d& m);
    KcGeMatrix3d& preMultBy(const KcGeMatrix3d& left);    // this = left * this
    KcGeMatrix3d& postMultBy(const KcGeMatrix3d& right);  // this = this * right
    KcGeMatrix3d& setToProduct(const KcGeMatrix3d& a, const KcGeMatrix3d& b);
    // A singular matrix has no inverse: inverse() then returns the matrix unchanged and
    // invert() leaves it as it is. Test isSingular() first when the difference matters.
    KcGeMatrix3d inverse() const;
    KcGeMatrix3d& invert();
    // True when an elimination pivot falls below tol.equalVector() times the largest
    // entry of its column, so the answer does not depend on the drawing units.
    bool isSingular(const KcGeTol& tol = KcGeContext::gTol) const;
    KcGeMatrix3d& transposeIt();
    KcGeMatrix3d transpose() const;
    double det() const;

    // Uniform scale factor of a conformal matrix (length of the transformed x axis).
    double scale() const;
    bool isUniScaledOrtho(const KcGeTol& tol = KcGeContext::gTol) const;
    bool isScaledOrtho(const KcGeTol& tol = KcGeContext::gTol) const;
    KcGeVector3d translation() const;

    KcGeMatrix3d& setToTranslation(const KcGeVector3d& v);
    KcGeMatrix3d& setToRotation(double angle, const KcGeVector3d& axis, const KcGePoint3d& center = KcGePoint3d::kOrigin);
    KcGeMatrix3d& setToScaling(double scale, const KcGePoint3d& center = KcGePoint3d::kOrigin);
    KcGeMatrix3d& setToScaling(const KcGeScale3d& scale, const KcGePoint3d& center = KcGePoint3d::kOrigin);
    KcGeMatrix3d& setToMirroring(const KcGePoint3d& pointOnPlane, const KcGeVector3d& planeNormal);
    KcGeMatrix3d& setToMirroring(const KcGePoint3d& center);  // point reflection
    // Maps the coordinate system (origin, x, y, z) onto the world.
    KcGeMatrix3d& setCoordSystem(const KcGePoint3d& origin, const KcGeVector3d& xAxis,
                                 const KcGeVector3d& yAxis, const KcGeVector3d& zAxis);
    void getCoordSystem(KcGePoint3d& origin, KcGeVector3d& xAxis, KcGeVector3d& yAxis, KcGeVector3d& zAxis) const;
    KcGeMatrix3d& setToAlignCoordSys(const KcGePoint3d& fromOrigin, const KcGeVector3d& fromX,
                                     const KcGeVector3d& fromY, const KcGeVector3d& fromZ,
                                     const KcGePoint3d& toOrigin, const KcGeVector3d& toX,
                                     const KcGeVector3d& toY, const KcGeVector3d& toZ);
    KcGeMatrix3d& setToWorldToPlane(const KcGeVector3d& normal);
    KcGeMatrix3d& setToPlaneToWorld(const KcGeVector3d& normal);

    static KcGeMatrix3d translation(const KcGeVector3d& v);
    static KcGeMatrix3d rotation(double angle, const KcGeVector3d& axis, const KcGePoint3d& center = KcGePoint3d::kOrigin);
    static KcGeMatrix3d scaling(double scale, const KcGePoint3d& center = KcGePoint3d::kOrigin);
    static KcGeMatrix3d scaling(const KcGeScale3d& scale, const KcGePoint3d& center = KcGePoint3d::kOrigin);
    static KcGeMatrix3d mirroring(const KcGePoint3d& pointOnPlane, const KcGeVector3d& planeNormal);
    static KcGeMatrix3d alignCoordSys(const KcGePoint3d& fromOrigin, const KcGeVector3d& fromX,
                                      const KcGeVector3d& fromY, const KcGeVector3d& fromZ,
                                      const KcGePoint3d& toOrigin, const KcGeVector3d& toX,
                                      const KcGeVector3d& toY, const KcGeVector3d& toZ);
    // The DXF arbitrary-axis object coordinate system of an extrusion direction.
    static KcGeMatrix3d worldToPlane(const KcGeVector3d& normal);
    static KcGeMatrix3d planeToWorld(const KcGeVector3d& normal);
};

inline KcGePoint3d operator*(const KcGeMatrix3d& m, const KcGePoint3d& p) {
    return {m.entry[0][0] * p.x + m.entry[0][1] * p.y + m.entry[0][2] * p.z + m.entry[0][3],
            m.entry[1][0] * p.x + m.entry[1][1] * p.y + m.entry[1][2] * p.z + m.entry[1][3],
            m.entry[2][0] * p.x + m.entry[2][1] * p.y + m.entry[2][2] * p.z + m.entry[2][3]};
}

inline KcGeVector3d operator*(const KcGeMatrix3d& m, const KcGeVector3d& v) {
    return {m.entry[0][0] * v.x + m.entry[0][1] * v.y + m.entry[0][2] * v.z,
            m.entry[1][0] * v.x + m.entry[1][1] * v.y + m.entry[1][2] * v.z,
            m.entry[2][0] * v.x + m.entry[2][1] * v.y + m.entry[2][2] * v.z};
}

using KcGePoint3dArray = KcArray<KcGePoint3d>;
using KcGePoint2dArray = KcArray<KcGePoint2d>;
using KcGeVector3dArray = KcArray<KcGeVector3d>;
using KcGeDoubleArray = KcArray<double>;
using KcGeIntArray = KcArray<int>;
