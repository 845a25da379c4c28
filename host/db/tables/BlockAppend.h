// Adding a new entity to a block record: the one path every caller takes
// (appendKcDbEntity, explode into the owner's space), so that layer defaults,
// the paper-space flag and sub-entities are handled alike.
#pragma once

#include "db/ObjectRecord.h"
#include "kcdbents.h"

namespace korva::db {

// Makes a new entity (and its pending attributes or vertices) resident at the end
// of the block; the entity stays open for write. The caller has checked that the
// entity is new, of a top-level type, and that its sub-records fit the drawing.
ObjectRecord& appendNewEntity(ObjectRecord& block, KcDbEntity& entity);

}  // namespace korva::db
