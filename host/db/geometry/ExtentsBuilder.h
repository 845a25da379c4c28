// Collects the exact world box of entities. Entity geometry is handed in the
// entity's own world coordinates; the builder maps it by the transformation of
// the block references it sits in (identity at the top level), so that a nested
// entity's box is computed from its transformed curves rather than by
// transforming a box, which would only enclose it.
#pragma once

#include <vector>

#include "db/ObjectRecord.h"
#include "geom/Box3d.h"
#include "kcge.h"

namespace korva::db::geometry {

class ExtentsBuilder {
public:
    ExtentsBuilder(geom::Box3d& box, const KcGeMatrix3d& toWorld, std::vector<const ObjectRecord*>& openBlocks)
        : box_(box), toWorld_(toWorld), openBlocks_(openBlocks) {}

    const KcGeMatrix3d& toWorld() const { return toWorld_; }
    // Block records whose entities are being measured (guards against cycles).
    std::vector<const ObjectRecord*>& openBlocks() const { return openBlocks_; }

    void point(const KcGePoint3d& p) { box_.add(toWorld_ * p); }
    // A box already in world coordinates.
    void worldBox(const geom::Box3d& box) { box_.add(box); }
    // c + u cos t + v sin t, t counter-clockwise from start to end (radians).
    void trigCurve(const KcGePoint3d& c, const KcGeVector3d& u, const KcGeVector3d& v, double start, double end);
    // An arc in the OCS of normal (centre with elevation in z), angles in radians.
    void ocsArc(const KcGePoint3d& centerOcs, double radius, double start, double end, const KcGeVector3d& normal);
    void nurbs(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
               const std::vector<double>& weights);

    // The same builder shifted by a world vector (the far face of a thick entity).
    ExtentsBuilder shifted(const KcGeVector3d& offset) const;
    // A builder for entities of a block placed by blockToOwner.
    ExtentsBuilder nested(const KcGeMatrix3d& blockToOwner) const;

private:
    geom::Box3d& box_;
    KcGeMatrix3d toWorld_;
    std::vector<const ObjectRecord*>& openBlocks_;
};

// Adds one entity; false when it has no extent (the box is then unchanged).
bool addEntityExtents(const ObjectRecord& entity, ExtentsBuilder& builder);

// Per-type parts of addEntityExtents.
bool addCurveExtents(const ObjectRecord& entity, ExtentsBuilder& builder);     // ExtentsCurves.cpp
bool addPolylineExtents(const ObjectRecord& entity, ExtentsBuilder& builder);  // ExtentsPolylines.cpp
bool addTextExtents(const ObjectRecord& entity, ExtentsBuilder& builder);      // ExtentsText.cpp
bool addBlockExtents(const ObjectRecord& entity, ExtentsBuilder& builder);     // ExtentsBlocks.cpp
bool addOtherExtents(const ObjectRecord& entity, ExtentsBuilder& builder);     // ExtentsOther.cpp

// Adds the geometry emitted by add, and again shifted by thickness along the
// normal when the entity is extruded.
template <class Add>
void withThickness(ExtentsBuilder& builder, double thickness, const KcGeVector3d& normal, Add&& add) {
    add(builder);
    if (thickness != 0.0) {
        ExtentsBuilder far = builder.shifted(normal.normal() * thickness);
        add(far);
    }
}

}  // namespace korva::db::geometry
