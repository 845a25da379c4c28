// Transformation of annotation and raster entities: leaders, multilines, images,
// wipeouts, viewports, tolerances, OLE frames, and dimensions with the graphics of
// their "*D" block (regenerating a dimension is out of reach, so its block's
// entities move with it).
#include <cmath>

#include "db/geometry/BlockTransform.h"
#include "db/geometry/PlaneMap.h"
#include "db/geometry/TransformSupport.h"
#include "db/RecordFields.h"
#include "geom/Angles.h"

namespace korva::db::geometry {

namespace {

void mapNormal(EntityTags& t, ObjectRecord& scratch, const KcGeMatrix3d& m) {
    writeNormal(t, scratch, transformedNormal(m, t.normal()));
}

void transformViewport(EntityTags& t, const KcGeMatrix3d& m) {
    // A viewport stays an upright rectangle: its centre moves, its sides scale.
    mapWorldGroups(t, m, {{10}, {}, {}});
    t.setReal(40, t.real(40, 0.0) * (m * KcGeVector3d::kXAxis).length());
    t.setReal(41, t.real(41, 0.0) * (m * KcGeVector3d::kYAxis).length());
}

}  // namespace

Kcad::ErrorStatus transformAnnotation(ObjectRecord& scratch, const KcGeMatrix3d& m) {
    EntityTags t(scratch);
    switch (scratch.type) {
        case Type::Leader:
            if (!isConformal(m)) return Kcad::eCannotScaleNonUniformly;
            mapWorldGroups(t, m, {{10}, {212, 213}, {211}});
            mapNormal(t, scratch, m);
            scaleGroups(t, {40, 41}, lengthFactor(m));
            break;
        case Type::MLine:
            if (!isConformal(m)) return Kcad::eCannotScaleNonUniformly;
            mapWorldGroups(t, m, {{10, 11}, {}, {12, 13}});
            mapNormal(t, scratch, m);
            scaleGroups(t, {40, 41, 42}, lengthFactor(m));
            break;
        case Type::Image:
        case Type::Wipeout: mapWorldGroups(t, m, {{10}, {11, 12}, {}}); break;
        case Type::Viewport: transformViewport(t, m); break;
        case Type::Tolerance:
            if (!isConformal(m)) return Kcad::eCannotScaleNonUniformly;
            mapWorldGroups(t, m, {{10}, {}, {11}});
            mapNormal(t, scratch, m);
            break;
        case Type::Ole2Frame: mapWorldGroups(t, m, {{10, 11}, {}, {}}); break;
        default: return Kcad::eNotApplicable;
    }
    t.commit(scratch);
    return Kcad::eOk;
}

Kcad::ErrorStatus transformDimension(const ObjectRecord& dimension, const KcGeMatrix3d& m, TransformBatch& batch) {
    ObjectRecord& scratch = batch.add(dimension);
    EntityTags t(scratch);
    const PlaneMap plane(m, t.normal());
    if (plane.degenerate()) return Kcad::eInvalidInput;
    if (!plane.conformal() || !isConformal(m)) return Kcad::eCannotScaleNonUniformly;
    const int64_t kind = t.integer(70, 0) & 7;
    // 10, 13, 14 and 15 are world points; 11, 12 and 16 are in the OCS.
    mapWorldGroups(t, m, {{10, 13, 14, 15}, {}, {}});
    for (int code : {11, 12, 16}) {
        if (const Tag* p = t.first(code)) t.setPoint(code, plane.point(p->pointValue()));
    }
    for (int code : {50, 52}) {
        if (const Tag* a = t.first(code)) {
            t.setReal(code, storedDegrees(plane.angle(geom::degreesToRadians(a->realValue()))));
        }
    }
    scaleGroups(t, {40}, plane.scale());
    if (kind != 2 && kind != 5) scaleGroups(t, {42}, plane.scale());  // a measured length, not an angle
    writeNormal(t, scratch, plane.newNormal());
    transformExtendedData(t, m);
    t.commit(scratch);

    // The graphics block belongs to this dimension alone; a copy not yet in a drawing
    // shares its original's block and leaves it alone.
    if (!dimension.drawing) return Kcad::eOk;
    const ObjectRecord* block = referencedBlock(dimension);
    if (!block || !block->container) return Kcad::eOk;
    const std::string_view name = fieldText(*block, {}, 2);
    if (name.size() < 2 || name[0] != '*' || (name[1] != 'D' && name[1] != 'd')) return Kcad::eOk;
    for (const ObjectRecord* member : block->container->members) {
        if (member->erased || batch.contains(*member)) continue;
        // Entities a dimension block holds all take a conformal map; others are left as they are.
        (void)transformInto(*member, m, batch);
    }
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
