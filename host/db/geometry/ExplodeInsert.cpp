// Explode of block references and dimensions. A reference becomes copies of its
// block's entities (attribute definitions included, its own attributes not)
// transformed by its block transform; nested references stay references. Under a
// non-uniform scale circles and arcs become ellipses; other entities that cannot
// take it refuse the whole explode. A dimension becomes copies of its "*D" block's
// entities, which are already in place.
#include "db/EntityGeometry.h"
#include "db/RecordFields.h"
#include "db/geometry/BlockTransform.h"
#include "db/geometry/EllipseMath.h"
#include "db/geometry/EntityTags.h"
#include "db/geometry/ExplodeSupport.h"
#include "db/geometry/PlaneMap.h"
#include "geom/Angles.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

// A circle or arc under a map it cannot take as a circle: the ellipse it becomes.
std::unique_ptr<KcDbEntity> ellipseOf(const ObjectRecord& round, const KcGeMatrix3d& m) {
    const EntityTags t(round);
    const KcGeVector3d normal = t.normal();
    const geom::OcsAxes axes = geom::ocsAxes(normal);
    const double radius = t.real(40, 0.0);
    const bool closed = round.type == Type::Circle;
    const double start = closed ? 0.0 : geom::degreesToRadians(t.real(50, 0.0));
    const double end = closed ? geom::kTwoPi : geom::degreesToRadians(t.real(51, 0.0));
    const EllipseArc arc = principalEllipse(m * geom::ocsToWcs(t.point(10), normal), m * (axes.x * radius),
                                            m * (axes.y * radius), start, end, closed, transformedNormal(m, normal));
    return newPart(Type::Ellipse, round,
                   {Tag::point(10, arc.center), Tag::point(11, KcGePoint3d::kOrigin + arc.majorAxis),
                    Tag::point(210, KcGePoint3d::kOrigin + arc.normal), Tag::real(40, arc.ratio),
                    Tag::real(41, arc.startParam), Tag::real(42, closed ? geom::kTwoPi : arc.endParam)});
}

}  // namespace

Kcad::ErrorStatus explodeInsert(const ObjectRecord& insert, Parts& parts) {
    const ObjectRecord* block = referencedBlock(insert);
    if (!block || !block->container) return Kcad::eNotApplicable;
    if (fieldInteger(*block, {}, 280, 1) == 0) return Kcad::eNotApplicable;  // not explodable
    const InsertFields fields = readInsertFields(insert);
    if (fields.isArray()) return Kcad::eNotApplicable;
    const KcGeMatrix3d transform = insertTransform(fields, blockBasePoint(*block));
    Parts made;
    for (const ObjectRecord* member : block->container->members) {
        if (member->erased) continue;
        std::unique_ptr<KcDbEntity> part = copyAsPart(*member);
        const Kcad::ErrorStatus status = transformEntity(partRecord(*part), transform);
        if (status == Kcad::eCannotScaleNonUniformly && (member->type == Type::Circle || member->type == Type::Arc)) {
            part = ellipseOf(*member, transform);
        } else if (status != Kcad::eOk) {
            return status;
        }
        made.push_back(std::move(part));
    }
    for (auto& part : made) parts.push_back(std::move(part));
    return Kcad::eOk;
}

Kcad::ErrorStatus explodeDimension(const ObjectRecord& dimension, Parts& parts) {
    const ObjectRecord* block = referencedBlock(dimension);
    if (!block || !block->container) return Kcad::eNotApplicable;
    for (const ObjectRecord* member : block->container->members) {
        if (!member->erased) parts.push_back(copyAsPart(*member));
    }
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
