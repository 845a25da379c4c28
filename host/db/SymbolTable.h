// A symbol table of a drawing (LAYER, LTYPE, STYLE, ...): its TABLE head record
// and its entries in table order, with a look-up by name that ignores case.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/ObjectRecord.h"

namespace korva::db {

class SymbolTable {
public:
    std::string name;  // "LAYER", "BLOCK_RECORD", ... as in the TABLE's group 2
    ObjectRecord* head = nullptr;
    std::vector<ObjectRecord*> records;

    // The non-erased record of that name, or nullptr.
    ObjectRecord* find(std::string_view recordName) const;
    // Call after a record was added, renamed or erased.
    void invalidateIndex() { indexValid_ = false; }

private:
    mutable std::unordered_map<std::string, ObjectRecord*> index_;
    mutable bool indexValid_ = false;
};

// The subclass marker of a table's records ("AcDbLayerTableRecord", ...), empty for other types.
std::string_view tableRecordMarker(TypeId type);

// The name of a table record (group 2), empty when it has none.
std::string_view recordName(const ObjectRecord& record);

}  // namespace korva::db
