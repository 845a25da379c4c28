// Transformation of LWPOLYLINE, POLYLINE and VERTEX. 2D polylines live in their
// OCS: vertices, elevation and widths go through a PlaneMap, and a mirror in the
// plane reverses each arc segment, so bulges change sign. Arc segments cannot take
// a non-uniform scale. 3D polylines, meshes and polyface meshes hold world points.
#include "db/geometry/PlaneMap.h"
#include "db/geometry/PolylineVertices.h"
#include "db/geometry/TransformSupport.h"
#include "geom/Angles.h"

namespace korva::db::geometry {

namespace {

bool hasBulges(const EntityTags& t) {
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (t.isData(i) && t.tags[i].code == 42 && t.tags[i].kind == TagKind::Real && t.tags[i].realValue() != 0.0) {
            return true;
        }
    }
    return false;
}

// The groups of a 2D vertex (of either polyline kind) at the given elevation.
void mapPlanarVertexGroups(EntityTags& t, size_t from, size_t to, const PlaneMap& plane, double elevation,
                           bool lightweight) {
    for (size_t i = from; i < to; ++i) {
        if (!t.isData(i)) continue;
        Tag& tag = t.tags[i];
        if (tag.code == 10 && tag.isPoint()) {
            const KcGePoint3d mapped = plane.point({tag.xyz[0], tag.xyz[1], elevation});
            // A 2D vertex stores its plane position; its z repeats the elevation or is 0.
            const double z = lightweight || tag.xyz[2] == 0.0 ? 0.0 : mapped.z;
            assignPoint(tag, {mapped.x, mapped.y, z}, lightweight);
        } else if ((tag.code == 40 || tag.code == 41 || tag.code == 43) && tag.kind == TagKind::Real) {
            tag.xyz[0] *= plane.scale();
        } else if (tag.code == 42 && tag.kind == TagKind::Real && plane.mirrored()) {
            tag.xyz[0] = -tag.xyz[0];
        } else if (tag.code == 50 && tag.kind == TagKind::Real && !lightweight) {
            tag.xyz[0] = storedDegrees(plane.angle(geom::degreesToRadians(tag.xyz[0])));
        }
    }
}

bool isPlanarPolyline(const ObjectRecord& polyline) {
    return polylineKindOf(EntityTags(polyline).integer(70, 0)) == PolylineKind::Planar;
}

}  // namespace

Kcad::ErrorStatus transformLightweightPolyline(ObjectRecord& scratch, const KcGeMatrix3d& m) {
    EntityTags t(scratch);
    const PlaneMap plane(m, t.normal());
    if (plane.degenerate()) return Kcad::eInvalidInput;
    if (!plane.conformal() && hasBulges(t)) return Kcad::eCannotScaleNonUniformly;
    const double elevation = t.real(38, 0.0);
    mapPlanarVertexGroups(t, 0, t.extendedDataStart(), plane, elevation, true);
    const double newElevation = plane.point({0.0, 0.0, elevation}).z;
    if (const double thickness = t.real(39, 0.0); thickness != 0.0) t.setReal(39, thickness * plane.thicknessFactor());
    writeNormal(t, scratch, plane.newNormal());
    writeGroup(t, scratch, Tag::real(38, newElevation), newElevation != 0.0);
    t.commit(scratch);
    return Kcad::eOk;
}

Kcad::ErrorStatus transformPolyline(const ObjectRecord& polyline, const KcGeMatrix3d& m, TransformBatch& batch) {
    ObjectRecord& scratch = batch.add(polyline);
    EntityTags t(scratch);
    std::vector<const ObjectRecord*> vertices;
    if (polyline.container) {
        for (const ObjectRecord* v : polyline.container->members) {
            if (v->type == Type::Vertex) vertices.push_back(v);
        }
    }
    if (!isPlanarPolyline(polyline)) {
        // The POLYLINE's own 10 is a dummy (0, 0, 0) for these kinds.
        if (const Tag* normal = t.first(210)) {
            t.setPoint(210, KcGePoint3d::kOrigin + transformedNormal(m, normal->pointValue().asVector()));
        }
        transformExtendedData(t, m);
        t.commit(scratch);
        for (const ObjectRecord* vertex : vertices) {
            if (Kcad::ErrorStatus status = transformVertex(*vertex, m, batch); status != Kcad::eOk) return status;
        }
        return Kcad::eOk;
    }
    const PlaneMap plane(m, t.normal());
    if (plane.degenerate()) return Kcad::eInvalidInput;
    if (!plane.conformal()) {
        for (const ObjectRecord* vertex : vertices) {
            if (hasBulges(EntityTags(*vertex))) return Kcad::eCannotScaleNonUniformly;
        }
    }
    const double elevation = t.point(10).z;
    const double newElevation = plane.point({0.0, 0.0, elevation}).z;
    writeGroup(t, scratch, Tag::point(10, {0.0, 0.0, newElevation}), newElevation != 0.0);
    scaleGroups(t, {40, 41}, plane.scale());
    if (const double thickness = t.real(39, 0.0); thickness != 0.0) t.setReal(39, thickness * plane.thicknessFactor());
    writeNormal(t, scratch, plane.newNormal());
    transformExtendedData(t, m);
    t.commit(scratch);
    for (const ObjectRecord* vertex : vertices) {
        ObjectRecord& v = batch.add(*vertex);
        EntityTags vt(v);
        mapPlanarVertexGroups(vt, 0, vt.extendedDataStart(), plane, elevation, false);
        transformExtendedData(vt, m);
        vt.commit(v);
    }
    return Kcad::eOk;
}

Kcad::ErrorStatus transformVertex(const ObjectRecord& vertex, const KcGeMatrix3d& m, TransformBatch& batch) {
    const ObjectRecord* owner = vertex.owner;
    ObjectRecord& scratch = batch.add(vertex);
    EntityTags t(scratch);
    if (owner && owner->type == Type::Polyline && isPlanarPolyline(*owner)) {
        const EntityTags polyline(*owner);
        const PlaneMap plane(m, polyline.normal());
        if (!plane.conformal() && hasBulges(t)) return Kcad::eCannotScaleNonUniformly;
        mapPlanarVertexGroups(t, 0, t.extendedDataStart(), plane, polyline.point(10).z, false);
    } else {
        const int64_t flags = t.integer(70, 0);
        const bool faceRecord = (flags & 128) && !(flags & 64);  // holds vertex indices, not a point
        if (!faceRecord) mapWorldGroups(t, m, {{10}, {}, {}});
    }
    transformExtendedData(t, m);
    t.commit(scratch);
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
