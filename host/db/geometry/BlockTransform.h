// Block references as transformations: the matrix that places a block's
// definition (translation, extrusion, rotation, scale and base point, plus the
// MINSERT array offset), the block record a reference or dimension names, and
// the reverse step that writes a matrix back as position, scale, rotation and
// normal.
#pragma once

#include <string_view>

#include "db/ObjectRecord.h"
#include "kcge.h"

namespace korva::db::geometry {

struct InsertFields {
    KcGePoint3d position;  // OCS
    KcGeVector3d normal{0, 0, 1};
    double rotation = 0.0;  // radians
    KcGeScale3d scale{1.0, 1.0, 1.0};
    int columns = 1;
    int rows = 1;
    double columnSpacing = 0.0;
    double rowSpacing = 0.0;

    bool isArray() const { return columns > 1 || rows > 1; }
};

InsertFields readInsertFields(const ObjectRecord& insert);

// The block record of that name in the record's drawing (or, for a record not yet
// in a drawing, the working database's); nullptr when there is none.
ObjectRecord* findBlockRecord(const ObjectRecord& record, std::string_view name);
// The block record an INSERT or DIMENSION names in group 2.
ObjectRecord* referencedBlock(const ObjectRecord& record);
// Group 10 of the block's BLOCK entity.
KcGePoint3d blockBasePoint(const ObjectRecord& blockRecord);

// Block coordinates to world: translation(position) * planeToWorld(normal) *
// rotation * translation(array offset) * scale * translation(-base point).
KcGeMatrix3d insertTransform(const InsertFields& fields, const KcGePoint3d& basePoint, int column = 0, int row = 0);

// Splits the linear part of a block transform into the rotation and scale of a
// reference with the given (new) normal; a mirror gives a negative x scale. False
// when the map shears the block's axes, which no reference can hold.
struct InsertOrientation {
    KcGeVector3d normal;
    double rotation = 0.0;
    KcGeScale3d scale;
};
bool decomposeInsertTransform(const KcGeMatrix3d& linear, const KcGeVector3d& newNormal, InsertOrientation& out);

}  // namespace korva::db::geometry
