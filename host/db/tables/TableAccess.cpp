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

std::string_view recordMarkerOf(TypeId type) {
    switch (type) {
        case Type::Layer: return "AcDbLayerTableRecord";
        case Type::Ltype: return "AcDbLinetypeTableRecord";
        case Type::Style: return "AcDbTextStyleTableRecord";
        case Type::DimStyle: return "AcDbDimStyleTableRecord";
        case Type::BlockRecord: return "AcDbBlockTableRecord";
        case Type::AppId: return "AcDbRegAppTableRecord";
        case Type::Ucs: return "AcDbUCSTableRecord";
        case Type::Vport: return "AcDbViewportTableRecord";
        case Type::View: return "AcDbViewTableRecord";
        default: return {};
    }
}

}  // namespace korva::db
