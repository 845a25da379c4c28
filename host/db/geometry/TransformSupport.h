// Shared steps of entity transformation: scratch copies of records (a refused
// transformation must change nothing, so every record is transformed on a copy
// and committed only when all of them succeeded), world groups mapped by code,
// angles written back in degrees, and the extended data that moves with its entity.
#pragma once

#include <deque>
#include <initializer_list>
#include <utility>

#include "db/ObjectRecord.h"
#include "db/geometry/EntityTags.h"
#include "kcadstd.h"
#include "kcge.h"

namespace korva::db::geometry {

// A copy of a record's tags and identity (type, drawing, owner), without its container.
ObjectRecord scratchCopy(const ObjectRecord& record);

// Transformations of a set of records, committed together.
class TransformBatch {
public:
    // The scratch copy of a record (the same copy when added again).
    ObjectRecord& add(const ObjectRecord& original);
    bool contains(const ObjectRecord& original) const;
    void commit();

private:
    std::deque<std::pair<ObjectRecord*, ObjectRecord>> records_;  // a deque keeps references stable
};

// An angle in radians as DXF degrees in [0, 360), snapped to whole degrees within 1e-9.
double storedDegrees(double radians);

// Maps world groups of the entity's data: points by m, vectors by its linear part,
// unit vectors (directions) by the linear part and normalized.
struct WorldGroups {
    std::initializer_list<int> points;
    std::initializer_list<int> vectors;
    std::initializer_list<int> directions;
};
void mapWorldGroups(EntityTags& tags, const KcGeMatrix3d& m, const WorldGroups& groups);

// Sets a group of the entity's data; when the record lacks it and insertWhenAbsent,
// inserts it in DXF order (the tags are committed and read again).
void writeGroup(EntityTags& tags, ObjectRecord& scratch, const Tag& value, bool insertWhenAbsent);
// The same for the extrusion: inserted only when it differs from the default (0, 0, 1).
void writeNormal(EntityTags& tags, ObjectRecord& scratch, const KcGeVector3d& normal);

// Multiplies the data groups of these codes by factor.
void scaleGroups(EntityTags& tags, std::initializer_list<int> codes, double factor);

// Extended data that follows its entity: 1011 world points, 1012 displacements,
// 1013 directions, 1041 distances and 1042 scale factors.
void transformExtendedData(EntityTags& tags, const KcGeMatrix3d& m);

// A uniform length factor of m (the cube root of its determinant's size).
double lengthFactor(const KcGeMatrix3d& m);

// Per-type transformations of one record (its sub-records are the caller's), by file:
// TransformCurves.cpp
Kcad::ErrorStatus transformCurve(ObjectRecord& scratch, const KcGeMatrix3d& m);
// TransformPolylines.cpp
Kcad::ErrorStatus transformLightweightPolyline(ObjectRecord& scratch, const KcGeMatrix3d& m);
// TransformText.cpp; allowDistortion: an attribute following its reference takes a
// non-uniform scale as width factor and oblique angle.
Kcad::ErrorStatus transformText(ObjectRecord& scratch, const KcGeMatrix3d& m, bool allowDistortion);
Kcad::ErrorStatus transformMText(ObjectRecord& scratch, const KcGeMatrix3d& m);
// TransformHatch.cpp
Kcad::ErrorStatus transformHatch(ObjectRecord& scratch, const KcGeMatrix3d& m);
// TransformOther.cpp: leaders, multilines, images, wipeouts, viewports, tolerances, OLE frames
Kcad::ErrorStatus transformAnnotation(ObjectRecord& scratch, const KcGeMatrix3d& m);
// Records with sub-records (and the dimension's block) transform through a batch.
Kcad::ErrorStatus transformPolyline(const ObjectRecord& polyline, const KcGeMatrix3d& m, TransformBatch& batch);
Kcad::ErrorStatus transformVertex(const ObjectRecord& vertex, const KcGeMatrix3d& m, TransformBatch& batch);
Kcad::ErrorStatus transformInsert(const ObjectRecord& insert, const KcGeMatrix3d& m, TransformBatch& batch);
Kcad::ErrorStatus transformDimension(const ObjectRecord& dimension, const KcGeMatrix3d& m, TransformBatch& batch);

// Any entity record into the batch (dispatch by type).
Kcad::ErrorStatus transformInto(const ObjectRecord& entity, const KcGeMatrix3d& m, TransformBatch& batch);

}  // namespace korva::db::geometry
