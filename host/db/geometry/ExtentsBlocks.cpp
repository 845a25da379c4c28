// Extents of block references and dimensions. A reference measures its block's
// entities under the block transform (nested references recurse; a reference to a
// block from inside itself adds nothing), every cell of a MINSERT array, and its
// attributes. A dimension measures the entities of its "*D" block, which are
// already in world coordinates.
#include <algorithm>

#include "db/geometry/BlockTransform.h"
#include "db/geometry/EntityTags.h"
#include "db/geometry/ExtentsBuilder.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

constexpr size_t kMaxNesting = 64;

// Attribute definitions of a block show in references only when constant; the
// references carry ATTRIBs for the others.
bool showsInReference(const ObjectRecord& member) {
    if (member.type != Type::AttDef) return true;
    return (EntityTags(member).integer(70, 0) & 2) != 0;
}

bool addBlockEntities(const ObjectRecord& block, ExtentsBuilder& builder, bool asReference) {
    auto& open = builder.openBlocks();
    if (!block.container || open.size() >= kMaxNesting || std::find(open.begin(), open.end(), &block) != open.end()) {
        return false;
    }
    open.push_back(&block);
    bool any = false;
    for (const ObjectRecord* member : block.container->members) {
        if (member->erased || (asReference && !showsInReference(*member))) continue;
        any = addEntityExtents(*member, builder) || any;
    }
    open.pop_back();
    return any;
}

bool addAttributes(const ObjectRecord& insert, ExtentsBuilder& builder) {
    if (!insert.container) return false;
    bool any = false;
    for (const ObjectRecord* attribute : insert.container->members) {
        if (attribute->erased || attribute->type != Type::Attrib) continue;
        if (EntityTags(*attribute).integer(70, 0) & 1) continue;  // invisible
        any = addEntityExtents(*attribute, builder) || any;
    }
    return any;
}

bool addInsert(const ObjectRecord& insert, ExtentsBuilder& builder) {
    bool any = addAttributes(insert, builder);
    const ObjectRecord* block = referencedBlock(insert);
    if (!block) return any;
    const InsertFields fields = readInsertFields(insert);
    const KcGeMatrix3d first = insertTransform(fields, blockBasePoint(*block));
    geom::Box3d cell;
    ExtentsBuilder cellBuilder(cell, builder.toWorld() * first, builder.openBlocks());
    if (!addBlockEntities(*block, cellBuilder, true)) return any;
    // The cells of an array differ by a translation along the rotated axes, so the
    // whole array's box is the first cell's box moved to the four corner cells.
    const KcGeMatrix3d placement = builder.toWorld() * KcGeMatrix3d::planeToWorld(fields.normal) *
                                   KcGeMatrix3d::rotation(fields.rotation, KcGeVector3d::kZAxis);
    for (int column : {0, fields.columns - 1}) {
        for (int row : {0, fields.rows - 1}) {
            const KcGeVector3d step(column * fields.columnSpacing, row * fields.rowSpacing, 0.0);
            const KcGeVector3d offset = placement * step;
            builder.worldBox(geom::Box3d(cell.min() + offset, cell.max() + offset));
        }
    }
    return true;
}

bool addDimension(const ObjectRecord& dimension, ExtentsBuilder& builder) {
    if (const ObjectRecord* block = referencedBlock(dimension)) {
        if (addBlockEntities(*block, builder, false)) return true;
    }
    // Without its block, the definition points are what is known.
    const EntityTags t(dimension);
    builder.point(t.point(10));
    builder.point(t.point(13, t.point(10)));
    builder.point(t.point(14, t.point(10)));
    builder.point(geom::ocsToWcs(t.point(11, geom::wcsToOcs(t.point(10), t.normal())), t.normal()));
    return true;
}

}  // namespace

bool addBlockExtents(const ObjectRecord& entity, ExtentsBuilder& builder) {
    return entity.type == Type::Insert ? addInsert(entity, builder) : addDimension(entity, builder);
}

}  // namespace korva::db::geometry
