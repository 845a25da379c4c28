// The order in which a block's entities are drawn. A block record's draw order
// lives in its SORTENTSTABLE (the entry "ACAD_SORTENTS" of its extension
// dictionary): pairs of an entity and a sort handle, drawn in the order of the
// sort handles, an entity without a pair sorting by its own handle. Without a
// table the entities are drawn in the order the block holds them.
#pragma once

#include <vector>

#include "db/ObjectRecord.h"

namespace korva::render {

// The live (not erased) entities of a block record, first drawn first.
std::vector<const db::ObjectRecord*> entitiesInDrawOrder(const db::ObjectRecord& blockRecord);

}  // namespace korva::render
