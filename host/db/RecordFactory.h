// Creation of the structural records a drawing needs: table heads, block
// records with their BLOCK and ENDBLK, and the default records of each table
// (layer, linetype, text style, ...). Records get fresh handles and the tags
// a current DXF writer gives them; older formats leave out what they lack.
#pragma once

#include <string_view>

#include "db/Drawing.h"

namespace korva::db {

// The table of that name, created (with its TABLE head) when missing.
SymbolTable& ensureTable(Drawing& drawing, std::string_view tableName);

// A new record at the end of its table, with handle, owner, markers and name.
ObjectRecord& createTableRecord(Drawing& drawing, std::string_view tableName, std::string_view name);

// A new block record with BLOCK and ENDBLK; the block is appended to blockOrder.
ObjectRecord& createBlock(Drawing& drawing, std::string_view name);

// Gives a block record the BLOCK and ENDBLK entities it lacks.
void ensureBlockEnds(Drawing& drawing, ObjectRecord& blockRecord);

// Creates an object of the OBJECTS section owned by owner (null: ownerless).
ObjectRecord& createObject(Drawing& drawing, TypeId type, ObjectRecord* owner);

// The tags a new object of a type starts with (before it gets a handle and an
// owner): subclass markers and the defaults of its required groups.
TagList newObjectTags(TypeId type);

// Assigns a fresh handle and writes it into the record's tags.
void assignNewHandle(Drawing& drawing, ObjectRecord& record);

}  // namespace korva::db
