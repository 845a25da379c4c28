// Reading polyline vertices. A spline- or curve-fit POLYLINE keeps its frame
// (control) vertices with flag 16 beside the fitted ones (flag 8): only the
// fitted curve is drawn, so the frame is left out.
#include "db/geometry/PolylineVertices.h"

#include "db/geometry/EntityTags.h"

namespace korva::db::geometry {

PolylineKind polylineKindOf(int64_t flags) {
    if (flags & 64) return PolylineKind::PolyFace;
    if (flags & 16) return PolylineKind::Mesh;
    if (flags & 8) return PolylineKind::Curve3d;
    return PolylineKind::Planar;
}

namespace {

void readLightweight(const EntityTags& t, PolylineShape& shape) {
    const double elevation = t.real(38, 0.0);
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (!t.isData(i)) continue;
        const Tag& tag = t.tags[i];
        if (tag.code == 10 && tag.isPoint()) {
            shape.vertices.push_back({{tag.xyz[0], tag.xyz[1], elevation}, 0.0});
        } else if (tag.code == 42 && !shape.vertices.empty() && tag.kind == TagKind::Real) {
            shape.vertices.back().bulge = tag.realValue();
        }
    }
}

void readHeavy(const ObjectRecord& polyline, const EntityTags& t, PolylineShape& shape) {
    const int64_t flags = t.integer(70, 0);
    const bool fitted = (flags & 6) != 0;
    const double elevation = t.point(10).z;
    if (!polyline.container) return;
    for (const ObjectRecord* vertex : polyline.container->members) {
        if (vertex->erased || vertex->type != Type::Vertex) continue;
        const EntityTags v(*vertex);
        const int64_t vertexFlags = v.integer(70, 0);
        if (fitted && (vertexFlags & 16)) continue;            // spline frame control point
        if ((vertexFlags & 128) && !(vertexFlags & 64)) continue;  // polyface face record: no point
        KcGePoint3d p = v.point(10);
        if (shape.kind == PolylineKind::Planar) p.z = elevation;
        shape.vertices.push_back({p, shape.kind == PolylineKind::Planar ? v.real(42, 0.0) : 0.0});
    }
}

}  // namespace

bool readPolylineShape(const ObjectRecord& polyline, PolylineShape& shape) {
    if (polyline.type != Type::LwPolyline && polyline.type != Type::Polyline) return false;
    const EntityTags t(polyline);
    const int64_t flags = t.integer(70, 0);
    shape.kind = polyline.type == Type::LwPolyline ? PolylineKind::Planar : polylineKindOf(flags);
    shape.normal = t.normal();
    shape.thickness = t.real(39, 0.0);
    shape.closed = (flags & 1) != 0;
    if (polyline.type == Type::LwPolyline) readLightweight(t, shape);
    else readHeavy(polyline, t, shape);
    return true;
}

}  // namespace korva::db::geometry
