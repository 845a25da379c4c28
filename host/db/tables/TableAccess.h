// What the symbol table classes need to find their data: the table that a
// TABLE head or a table record belongs to, and the subclass marker under
// which each kind of record keeps its own groups.
#pragma once

#include <string_view>

#include "db/Drawing.h"

namespace korva::db {

SymbolTable* tableOfHead(const ObjectRecord& head);
// The table of a resident record (through its owner, the TABLE head).
SymbolTable* tableOfRecord(const ObjectRecord& record);


}  // namespace korva::db
