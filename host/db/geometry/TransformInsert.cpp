// Transformation of block references (INSERT and MINSERT) with their
// attributes. The reference's block transform is composed with the matrix and
// split again into position, normal, rotation and scale factors; a mirror shows as
// a negative x scale. A transformation that would shear the block's axes cannot be
// held by a reference. The array spacing of a MINSERT follows its axes.
#include <algorithm>
#include <cmath>

#include "db/geometry/BlockTransform.h"
#include "db/geometry/PlaneMap.h"
#include "db/geometry/TransformSupport.h"

namespace korva::db::geometry {

Kcad::ErrorStatus transformInsert(const ObjectRecord& insert, const KcGeMatrix3d& m, TransformBatch& batch) {
    ObjectRecord& scratch = batch.add(insert);
    EntityTags t(scratch);
    const InsertFields fields = readInsertFields(scratch);
    const KcGeMatrix3d placement = KcGeMatrix3d::planeToWorld(fields.normal) *
                                   KcGeMatrix3d::rotation(fields.rotation, KcGeVector3d::kZAxis);
    const KcGeMatrix3d blockLinear = placement * KcGeMatrix3d::scaling(fields.scale);
    KcGeMatrix3d linear = m;
    linear.entry[0][3] = linear.entry[1][3] = linear.entry[2][3] = 0.0;
    InsertOrientation orientation;
    if (!decomposeInsertTransform(linear * blockLinear, transformedNormal(m, fields.normal), orientation)) {
        return Kcad::eCannotScaleNonUniformly;
    }
    // A block flattened to a line cannot be shown by a reference.
    const KcGeScale3d& scale = orientation.scale;
    const double largest = std::max({std::abs(scale.sx), std::abs(scale.sy), std::abs(scale.sz)});
    if (std::abs(scale.sx) <= 1e-12 * largest || std::abs(scale.sy) <= 1e-12 * largest) {
        return Kcad::eInvalidInput;
    }
    const KcGePoint3d position = m * (KcGeMatrix3d::planeToWorld(fields.normal) * fields.position);
    t.setPoint(10, KcGeMatrix3d::worldToPlane(orientation.normal) * position);

    if (fields.isArray()) {
        // The array's column and row steps, seen along the new rotated axes.
        const KcGeMatrix3d toNewAxes = KcGeMatrix3d::rotation(-orientation.rotation, KcGeVector3d::kZAxis) *
                                       KcGeMatrix3d::worldToPlane(orientation.normal) * linear * placement;
        const KcGeVector3d column = toNewAxes * KcGeVector3d(fields.columnSpacing, 0.0, 0.0);
        const KcGeVector3d row = toNewAxes * KcGeVector3d(0.0, fields.rowSpacing, 0.0);
        const double size = std::max(column.length(), row.length());
        if (std::abs(column.y) > 1e-9 * size || std::abs(row.x) > 1e-9 * size) return Kcad::eCannotScaleNonUniformly;
        t.setReal(44, column.x);
        t.setReal(45, row.y);
    }
    // Scale factors and rotation are written when the reference has them or they leave their defaults.
    const double values[] = {orientation.scale.sx, orientation.scale.sy, orientation.scale.sz};
    for (int axis = 0; axis < 3; ++axis) {
        writeGroup(t, scratch, Tag::real(41 + axis, values[axis]), std::abs(values[axis] - 1.0) > 1e-12);
    }
    const double rotation = storedDegrees(orientation.rotation);
    writeGroup(t, scratch, Tag::real(50, rotation), rotation != 0.0);
    writeNormal(t, scratch, orientation.normal);
    transformExtendedData(t, m);
    t.commit(scratch);

    if (!insert.container) return Kcad::eOk;
    for (const ObjectRecord* attribute : insert.container->members) {
        if (attribute->type != Type::Attrib) continue;
        ObjectRecord& a = batch.add(*attribute);
        if (Kcad::ErrorStatus status = transformText(a, m, true); status != Kcad::eOk) return status;
        EntityTags at(a);
        transformExtendedData(at, m);
        at.commit(a);
    }
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
