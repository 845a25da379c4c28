// The map from entity coordinates to picture pixels.
#include "render/Placement.h"

#include <algorithm>
#include <cmath>

namespace korva::render {

namespace {

// Pixels per unit of a 2 x 3 map (the picture's x and y from an entity's x, y
// and z): the geometric mean of its two stretches, or the larger one when the
// map flattens a direction away (an entity seen edge-on).
double stretchOf(const double j[2][3]) {
    double a = 0.0, b = 0.0, c = 0.0;  // J J^T = [a b; b c]
    for (int k = 0; k < 3; ++k) {
        a += j[0][k] * j[0][k];
        b += j[0][k] * j[1][k];
        c += j[1][k] * j[1][k];
    }
    const double det = a * c - b * b;
    const double largest = (a + c) / 2.0 + std::sqrt(std::max(0.0, (a - c) * (a - c) / 4.0 + b * b));
    const double mean = std::sqrt(std::sqrt(std::max(0.0, det)));
    if (mean > 1e-6 * std::sqrt(largest)) return mean;
    return largest > 0.0 ? std::sqrt(largest) : 1.0;
}

}  // namespace

Placement::Placement(const KcGeMatrix3d& toView, const QTransform& viewToPicture)
    : toView_(toView), viewToPicture_(viewToPicture) {
    double j[2][3];
    for (int k = 0; k < 3; ++k) {
        j[0][k] = viewToPicture.m11() * toView.entry[0][k] + viewToPicture.m21() * toView.entry[1][k];
        j[1][k] = viewToPicture.m12() * toView.entry[0][k] + viewToPicture.m22() * toView.entry[1][k];
    }
    pixelsPerUnit_ = stretchOf(j);
}

Placement Placement::nested(const KcGeMatrix3d& blockToOwner) const {
    return Placement(toView_ * blockToOwner, viewToPicture_);
}

QPointF Placement::picture(const KcGePoint3d& point) const {
    const KcGePoint3d view = toView_ * point;
    return viewToPicture_.map(QPointF(view.x, view.y));
}

QTransform Placement::planeToPicture(const KcGeMatrix3d& planeToEntity) const {
    const KcGeMatrix3d full = toView_ * planeToEntity;
    const QTransform planeToView(full.entry[0][0], full.entry[1][0], full.entry[0][1], full.entry[1][1],
                                 full.entry[0][3], full.entry[1][3]);
    return planeToView * viewToPicture_;
}

KcGeMatrix3d ocsPlane(const KcGeVector3d& normal, double elevation) {
    return KcGeMatrix3d::planeToWorld(normal) * KcGeMatrix3d::translation({0.0, 0.0, elevation});
}

KcGeMatrix3d planeOfAxes(const KcGePoint3d& origin, const KcGeVector3d& u, const KcGeVector3d& v,
                         const KcGeVector3d& normal) {
    KcGeMatrix3d m;
    auto setColumn = [&m](int column, double x, double y, double z) {
        m.entry[0][column] = x;
        m.entry[1][column] = y;
        m.entry[2][column] = z;
    };
    setColumn(0, u.x, u.y, u.z);
    setColumn(1, v.x, v.y, v.z);
    setColumn(2, normal.x, normal.y, normal.z);
    setColumn(3, origin.x, origin.y, origin.z);
    return m;
}

}  // namespace korva::render
