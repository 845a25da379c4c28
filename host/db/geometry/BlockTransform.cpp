// Block transforms of INSERT records, and their decomposition after a change.
#include "db/geometry/BlockTransform.h"

#include <algorithm>
#include <cmath>

#include "db/Drawing.h"
#include "db/RecordFields.h"
#include "db/geometry/EntityTags.h"
#include "geom/Angles.h"
#include "kcdbdatabase.h"

namespace korva::db::geometry {

InsertFields readInsertFields(const ObjectRecord& insert) {
    const EntityTags t(insert);
    InsertFields f;
    f.position = t.point(10);
    f.normal = t.normal();
    f.rotation = geom::degreesToRadians(t.real(50, 0.0));
    f.scale = {t.real(41, 1.0), t.real(42, 1.0), t.real(43, 1.0)};
    f.columns = static_cast<int>(std::max<int64_t>(1, t.integer(70, 1)));
    f.rows = static_cast<int>(std::max<int64_t>(1, t.integer(71, 1)));
    f.columnSpacing = t.real(44, 0.0);
    f.rowSpacing = t.real(45, 0.0);
    return f;
}

ObjectRecord* findBlockRecord(const ObjectRecord& record, std::string_view name) {
    if (name.empty()) return nullptr;
    const Drawing* drawing = record.drawing;
    if (!drawing) {
        KcDbDatabase* working = kcdbHostApplicationServices()->workingDatabase();
        if (!working) return nullptr;
        drawing = &working->drawing();
    }
    ObjectRecord* block = drawing->tableRecord("BLOCK_RECORD", name);
    return block && !block->erased ? block : nullptr;
}

ObjectRecord* referencedBlock(const ObjectRecord& record) {
    const EntityTags t(record);
    const Tag* name = t.first(2);
    return name && name->kind == TagKind::String ? findBlockRecord(record, name->text) : nullptr;
}

KcGePoint3d blockBasePoint(const ObjectRecord& blockRecord) {
    if (!blockRecord.container || !blockRecord.container->begin) return KcGePoint3d::kOrigin;
    return fieldPoint(*blockRecord.container->begin, {}, 10);
}

KcGeMatrix3d insertTransform(const InsertFields& f, const KcGePoint3d& basePoint, int column, int row) {
    const KcGePoint3d world = KcGeMatrix3d::planeToWorld(f.normal) * f.position;
    const KcGeVector3d arrayOffset(column * f.columnSpacing, row * f.rowSpacing, 0.0);
    return KcGeMatrix3d::translation(world.asVector()) * KcGeMatrix3d::planeToWorld(f.normal) *
           KcGeMatrix3d::rotation(f.rotation, KcGeVector3d::kZAxis) * KcGeMatrix3d::translation(arrayOffset) *
           KcGeMatrix3d::scaling(f.scale) * KcGeMatrix3d::translation(-basePoint.asVector());
}

bool decomposeInsertTransform(const KcGeMatrix3d& linear, const KcGeVector3d& newNormal, InsertOrientation& out) {
    out.normal = newNormal;
    // The block axes as they land in the new OCS: x and y must stay in the plane and
    // perpendicular, z along the new normal.
    const KcGeMatrix3d k = KcGeMatrix3d::worldToPlane(out.normal) * linear;
    const KcGeVector3d x(k.entry[0][0], k.entry[1][0], k.entry[2][0]);
    const KcGeVector3d y(k.entry[0][1], k.entry[1][1], k.entry[2][1]);
    const KcGeVector3d z(k.entry[0][2], k.entry[1][2], k.entry[2][2]);
    const double size = std::max({x.length(), y.length(), z.length()});
    if (size == 0.0) return false;
    const double tolerance = 1e-9 * size;
    if (std::abs(x.z) > tolerance || std::abs(y.z) > tolerance || std::abs(z.x) > tolerance ||
        std::abs(z.y) > tolerance || std::abs(x.x * y.x + x.y * y.y) > tolerance * size) {
        return false;
    }
    // A left-handed pair of in-plane axes is a mirror: as real hosts do, show it as a
    // negative x scale, turning the rotation half a turn instead of negating y.
    const bool mirror = x.x * y.y - x.y * y.x < 0.0;
    const double sign = mirror ? -1.0 : 1.0;
    out.rotation = geom::normalizeAngle(std::atan2(sign * x.y, sign * x.x));
    const double c = std::cos(out.rotation), s = std::sin(out.rotation);
    out.scale.sx = sign * std::hypot(x.x, x.y);
    out.scale.sy = -s * y.x + c * y.y;
    out.scale.sz = z.z;
    return true;
}

}  // namespace korva::db::geometry
