// transformEntity: applies a matrix to an entity record and its sub-records. All
// records are transformed on scratch copies and committed together, so that a
// refused transformation (a non-uniform scale a circle cannot take, an entity
// type without transformable geometry, a bad matrix) changes nothing. A matrix
// may flatten space onto a plane (block references with a zero z scale do), but
// an entity whose own plane collapses is refused with eInvalidInput.
#include <cmath>

#include "db/EntityGeometry.h"
#include "db/geometry/PlaneMap.h"
#include "db/geometry/TransformSupport.h"

namespace korva::db {

namespace geometry {

namespace {

// Records of one type with no sub-records, transformed on their own.
Kcad::ErrorStatus transformSingle(ObjectRecord& scratch, const KcGeMatrix3d& m) {
    switch (scratch.type) {
        case Type::Line: case Type::Point: case Type::Face3d: case Type::Ray: case Type::Xline:
        case Type::Spline: case Type::Ellipse: case Type::Circle: case Type::Arc: case Type::Solid:
        case Type::Trace:
            return transformCurve(scratch, m);
        case Type::LwPolyline: return transformLightweightPolyline(scratch, m);
        case Type::Text: case Type::AttDef: case Type::Attrib: case Type::Shape:
            return transformText(scratch, m, false);
        case Type::MText: return transformMText(scratch, m);
        case Type::Hatch: return transformHatch(scratch, m);
        case Type::SeqEnd: return Kcad::eOk;
        default: return transformAnnotation(scratch, m);
    }
}

}  // namespace

// A finite matrix whose last row is (0, 0, 0, 1).
bool isAffine(const KcGeMatrix3d& m) {
    for (const auto& row : m.entry) {
        for (double value : row) {
            if (!std::isfinite(value)) return false;
        }
    }
    return m.entry[3][0] == 0.0 && m.entry[3][1] == 0.0 && m.entry[3][2] == 0.0 && m.entry[3][3] == 1.0;
}

Kcad::ErrorStatus transformInto(const ObjectRecord& entity, const KcGeMatrix3d& m, TransformBatch& batch) {
    switch (entity.type) {
        case Type::Insert: return transformInsert(entity, m, batch);
        case Type::Polyline: return transformPolyline(entity, m, batch);
        case Type::Vertex: return transformVertex(entity, m, batch);
        case Type::Dimension: return transformDimension(entity, m, batch);
        default: break;
    }
    ObjectRecord& scratch = batch.add(entity);
    if (Kcad::ErrorStatus status = transformSingle(scratch, m); status != Kcad::eOk) return status;
    EntityTags tags(scratch);
    transformExtendedData(tags, m);
    tags.commit(scratch);
    return Kcad::eOk;
}

}  // namespace geometry

Kcad::ErrorStatus transformEntity(ObjectRecord& entity, const KcGeMatrix3d& m) {
    if (entity.erased) return Kcad::eWasErased;
    if (!entity.isEntity()) return Kcad::eNotApplicable;
    if (!geometry::isAffine(m) || geometry::isDegenerate(m)) return Kcad::eInvalidInput;
    geometry::TransformBatch batch;
    if (Kcad::ErrorStatus status = geometry::transformInto(entity, m, batch); status != Kcad::eOk) return status;
    batch.commit();
    return Kcad::eOk;
}

}  // namespace korva::db
