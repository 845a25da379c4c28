#include "commands/view/UcsOfEntity.h"

#include <cmath>

#include "db/RecordFields.h"
#include "geom/Ocs.h"

namespace korva::commands {

namespace {

namespace Type = db::Type;

constexpr double kDegrees = 3.14159265358979323846 / 180.0;

KcGeVector3d extrusionOf(const db::ObjectRecord& entity) {
    const KcGeVector3d normal = db::fieldVector(entity, {}, 210, KcGeVector3d::kZAxis);
    return normal.isZeroLength() ? KcGeVector3d::kZAxis : normal.normal();
}

// A frame from an origin, an X direction and a Z direction (Y completes it).
std::optional<editor::UcsFrame> frameOf(const KcGePoint3d& origin, const KcGeVector3d& xDirection,
                                        const KcGeVector3d& zDirection) {
    const KcGeVector3d z = zDirection.normal();
    KcGeVector3d x = xDirection - z * xDirection.dotProduct(z);  // into the plane
    if (x.isZeroLength() || z.isZeroLength()) return std::nullopt;
    x.normalize();
    editor::UcsFrame frame;
    frame.origin = origin;
    frame.xAxis = x;
    frame.yAxis = z.crossProduct(x).normal();
    return frame;
}

// Points stored in the OCS of the entity's extrusion.
bool hasOcsPoints(db::TypeId type) {
    switch (type) {
        case Type::Text:
        case Type::Attrib:
        case Type::AttDef:
        case Type::Shape:
        case Type::Insert:
        case Type::Circle:
        case Type::Arc:
        case Type::Solid:
        case Type::Trace:
        case Type::LwPolyline:
        case Type::Polyline:
        case Type::Hatch: return true;
        default: return false;
    }
}

// Insertion point and rotation (degrees in the tags) in the plane of the extrusion.
std::optional<editor::UcsFrame> rotatedFrame(const db::ObjectRecord& entity) {
    const KcGeVector3d normal = extrusionOf(entity);
    const geom::OcsAxes axes = geom::ocsAxes(normal);
    const double angle = db::fieldReal(entity, {}, 50, 0.0) * kDegrees;
    const KcGePoint3d origin = geom::ocsToWcs(db::fieldPoint(entity, {}, 10), normal);
    return frameOf(origin, axes.x * std::cos(angle) + axes.y * std::sin(angle), normal);
}

std::optional<editor::UcsFrame> lineFrame(const db::ObjectRecord& entity) {
    const KcGePoint3d start = db::fieldPoint(entity, {}, 10);
    const KcGeVector3d along = db::fieldPoint(entity, {}, 11) - start;
    if (along.isZeroLength()) return std::nullopt;
    KcGeVector3d z = extrusionOf(entity);
    // A line along its own extrusion: the plane holding the line and the world Z (or Y).
    if (z.isParallelTo(along))
        z = along.isParallelTo(KcGeVector3d::kZAxis) ? KcGeVector3d::kYAxis : KcGeVector3d::kZAxis;
    return frameOf(start, along, z);
}

// Origin at the first corner, X along the first edge, the plane through the third corner.
std::optional<editor::UcsFrame> faceFrame(const db::ObjectRecord& entity, bool ocs) {
    const KcGeVector3d normal = extrusionOf(entity);
    auto corner = [&](int code) {
        const KcGePoint3d p = db::fieldPoint(entity, {}, code);
        return ocs ? geom::ocsToWcs(p, normal) : p;
    };
    const KcGePoint3d first = corner(10);
    const KcGeVector3d x = corner(11) - first;
    const KcGeVector3d z = x.crossProduct(corner(12) - first);
    if (z.isZeroLength()) return frameOf(first, x, normal);
    return frameOf(first, x, z);
}

}  // namespace

std::optional<editor::UcsFrame> ucsOfEntity(const db::ObjectRecord& entity) {
    switch (entity.type) {
        case Type::Text:
        case Type::Attrib:
        case Type::AttDef:
        case Type::Shape:
        case Type::Insert: return rotatedFrame(entity);
        case Type::Line: return lineFrame(entity);
        case Type::Face3d: return faceFrame(entity, false);
        case Type::Solid:
        case Type::Trace: return faceFrame(entity, true);
        case Type::MText: {
            const KcGeVector3d normal = extrusionOf(entity);
            KcGeVector3d direction = db::fieldVector(entity, {}, 11, KcGeVector3d::kIdentity);
            if (direction.isZeroLength()) {
                const double angle = db::fieldReal(entity, {}, 50, 0.0);  // radians in MTEXT
                const geom::OcsAxes axes = geom::ocsAxes(normal);
                direction = axes.x * std::cos(angle) + axes.y * std::sin(angle);
            }
            return frameOf(db::fieldPoint(entity, {}, 10), direction, normal);
        }
        default: break;
    }
    const KcGeVector3d normal = extrusionOf(entity);
    KcGePoint3d origin = db::fieldPoint(entity, {}, 10);
    if (hasOcsPoints(entity.type)) {
        // A light polyline keeps its elevation apart (38); its vertices are 2D.
        if (entity.type == Type::LwPolyline) origin.z = db::fieldReal(entity, {}, 38, 0.0);
        origin = geom::ocsToWcs(origin, normal);
    }
    return frameOf(origin, geom::ocsAxes(normal).x, normal);
}

}  // namespace korva::commands
