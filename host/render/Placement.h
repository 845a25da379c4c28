// Where the geometry of an entity lands in the picture. An entity's points are
// in its own coordinates (a block's, for entities drawn through references);
// the placement carries them into view coordinates with a 3D matrix (block
// transforms, a viewport's view), drops z (a parallel projection along the
// view's z axis) and maps x and y to picture pixels. Every step is affine, so a
// planar entity's whole plane maps to the picture by one QTransform, and
// curves built in their plane (arcs as Bezier pieces, glyph outlines) stay exact.
#pragma once

#include <QPointF>
#include <QTransform>

#include "kcge.h"

namespace korva::render {

class Placement {
public:
    Placement(const KcGeMatrix3d& toView, const QTransform& viewToPicture);

    // The placement of entities of a block placed by blockToOwner.
    Placement nested(const KcGeMatrix3d& blockToOwner) const;

    QPointF picture(const KcGePoint3d& point) const;
    // The picture transform of a plane: planeToEntity maps the plane's (x, y, 0)
    // into the entity's coordinates.
    QTransform planeToPicture(const KcGeMatrix3d& planeToEntity) const;
    // Pixels per unit of the entity's coordinates within the plane of the view
    // (the geometric mean of the two directions), for sizes of dashes and details.
    double pixelsPerUnit() const { return pixelsPerUnit_; }

    const KcGeMatrix3d& toView() const { return toView_; }
    const QTransform& viewToPicture() const { return viewToPicture_; }

private:
    KcGeMatrix3d toView_;
    QTransform viewToPicture_;
    double pixelsPerUnit_ = 1.0;
};

// Planes as maps of their (x, y, 0) into entity coordinates, for planeToPicture.
// The OCS plane of a normal at an elevation.
KcGeMatrix3d ocsPlane(const KcGeVector3d& normal, double elevation);
// (x, y, 0) -> origin + x u + y v (z along normal).
KcGeMatrix3d planeOfAxes(const KcGePoint3d& origin, const KcGeVector3d& u, const KcGeVector3d& v,
                         const KcGeVector3d& normal);

}  // namespace korva::render
