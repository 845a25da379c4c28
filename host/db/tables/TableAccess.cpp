// Look-ups from records to their tables.
#include "db/tables/TableAccess.h"

namespace korva::db {

SymbolTable* tableOfHead(const ObjectRecord& head) {
    if (!head.drawing) return nullptr;
    for (SymbolTable& table : head.drawing->tables) {
        if (table.head == &head) return &table;
    }
    return nullptr;
}

SymbolTable* tableOfRecord(const ObjectRecord& record) {
    if (!record.drawing) return nullptr;
    if (record.owner) {
        if (SymbolTable* table = tableOfHead(*record.owner)) return table;
    }
    // A record whose owner link is missing is still listed by its table.
    for (SymbolTable& table : record.drawing->tables) {
        for (const ObjectRecord* listed : table.records) {
            if (listed == &record) return &table;
        }
    }
    return nullptr;
}


}  // namespace korva::db
