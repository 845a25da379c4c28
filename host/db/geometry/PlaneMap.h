// How a transformation acts on a planar entity stored in the object coordinate
// system (OCS) of its extrusion: the new extrusion, the map from old OCS
// coordinates to new OCS coordinates, and what it does inside the plane (scale,
// rotation, reflection). Circles, arcs, texts, polylines, inserts and hatches
// all transform through it.
#pragma once

#include "kcge.h"

namespace korva::db::geometry {

// The extrusion of a plane after a transformation: normal to the transformed
// plane, on the side m maps the old normal to (so a mirror in the plane keeps
// (0,0,1) and a mirror of the plane itself flips it). Components below 1e-12
// are cleared so that axis-aligned normals stay exact.
KcGeVector3d transformedNormal(const KcGeMatrix3d& m, const KcGeVector3d& normal);

// A unit vector with components below 1e-12 cleared; the zero vector stays zero.
KcGeVector3d cleanUnit(const KcGeVector3d& v);

class PlaneMap {
public:
    PlaneMap(const KcGeMatrix3d& m, const KcGeVector3d& oldNormal);

    const KcGeVector3d& oldNormal() const { return oldNormal_; }
    const KcGeVector3d& newNormal() const { return newNormal_; }

    // Old OCS point (elevation in z) to new OCS point.
    KcGePoint3d point(const KcGePoint3d& ocs) const { return ocsMap_ * ocs; }
    KcGeVector3d vector(const KcGeVector3d& ocs) const { return ocsMap_ * ocs; }
    // The direction of an in-plane angle after the map (radians, in [0, 2 pi)).
    double angle(double radians) const;

    // The in-plane part reverses orientation (a mirror within the plane).
    bool mirrored() const { return mirrored_; }
    // The in-plane part is a rotation, reflection and uniform scale (circles stay circles).
    bool conformal() const { return conformal_; }
    // Length factor in the plane (the geometric mean for non-conformal maps).
    double scale() const { return scale_; }
    // The plane collapses to a line or a point (nothing planar survives the map).
    bool degenerate() const { return degenerate_; }
    // Factor of lengths along the extrusion (thickness).
    double thicknessFactor() const { return thicknessFactor_; }

private:
    KcGeVector3d oldNormal_;
    KcGeVector3d newNormal_;
    KcGeMatrix3d ocsMap_;
    bool mirrored_ = false;
    bool conformal_ = true;
    bool degenerate_ = false;
    double scale_ = 1.0;
    double thicknessFactor_ = 1.0;
};

// Whether the linear part of m keeps shapes (rotation, reflection, uniform scale).
bool isConformal(const KcGeMatrix3d& m);

// Whether the linear part of m maps space onto a line or a point (rank below 2), so
// that no planar entity can survive it. A map that flattens space onto a plane (a
// zero z scale, common in block references of 2D drawings) is not degenerate.
bool isDegenerate(const KcGeMatrix3d& m);

}  // namespace korva::db::geometry
