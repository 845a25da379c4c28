// Elliptical arcs in the form c + u cos t + v sin t, where u and v need not be
// perpendicular: the image of a circle or ellipse under any affine map has this
// form. Gives the exact box of such an arc and its principal axes, which is how an
// ELLIPSE is stored (major axis, ratio, start and end parameters).
#pragma once

#include "geom/Box3d.h"
#include "kcge.h"

namespace korva::db::geometry {

// Exact box of c + u cos t + v sin t for t swept counter-clockwise from start to
// end (equal angles modulo a turn: the whole curve).
geom::Box3d trigCurveBox(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start,
                         double end);

struct EllipseArc {
    KcGePoint3d center;
    KcGeVector3d majorAxis;
    KcGeVector3d normal;
    double ratio = 1.0;
    double startParam = 0.0;
    double endParam = 0.0;  // equal to startParam + 2 pi for a closed ellipse
};

// The ELLIPSE fields of c + u cos t + v sin t, t from start to end, seen from
// normal (which must be perpendicular to u and v). closed: the whole curve.
EllipseArc principalEllipse(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start,
                            double end, bool closed, const KcGeVector3d& normal);

}  // namespace korva::db::geometry
