// Symbol tables: a name index rebuilt lazily after changes.
#include "db/SymbolTable.h"

#include "db/TextCase.h"

namespace korva::db {

std::string_view tableRecordMarker(TypeId type) {
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

std::string_view recordName(const ObjectRecord& record) {
    TagRef tag;
    // Group 2 is the name in every table record; a 2 inside a 102 group does not occur.
    if (record.tags.find(2, tag)) return tag.text();
    return {};
}

ObjectRecord* SymbolTable::find(std::string_view recordNameToFind) const {
    if (!indexValid_) {
        index_.clear();
        for (ObjectRecord* record : records) {
            if (!record->erased) index_.emplace(foldName(db::recordName(*record)), record);
        }
        indexValid_ = true;
    }
    auto it = index_.find(foldName(recordNameToFind));
    if (it == index_.end() || it->second->erased) return nullptr;
    return it->second;
}

}  // namespace korva::db
