// The object coordinate system (OCS) of planar entities: the DXF arbitrary-axis
// algorithm derives x and y axes from an extrusion direction alone, so an entity stores
// only its normal. These helpers convert points and vectors between OCS and world (WCS).
#pragma once

#include "kcge.h"

namespace korva::geom {

// Unit axes of the OCS; z is the normalised extrusion direction.
struct OcsAxes {
    KcGeVector3d x;
    KcGeVector3d y;
    KcGeVector3d z;
};

// A zero normal is read as the world z axis, the DXF default extrusion.
OcsAxes ocsAxes(const KcGeVector3d& normal);
KcGeVector3d arbitraryXAxis(const KcGeVector3d& normal);

KcGePoint3d ocsToWcs(const KcGePoint3d& point, const KcGeVector3d& normal);
KcGePoint3d wcsToOcs(const KcGePoint3d& point, const KcGeVector3d& normal);
KcGeVector3d ocsToWcs(const KcGeVector3d& vector, const KcGeVector3d& normal);
KcGeVector3d wcsToOcs(const KcGeVector3d& vector, const KcGeVector3d& normal);

}  // namespace korva::geom
