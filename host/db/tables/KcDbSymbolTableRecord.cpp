// The common part of every table record: its name (group 2) and the
// external-reference flags (group 70; a block keeps them on its BLOCK entity).
#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/ResultBuffers.h"
#include "db/TextCase.h"
#include "db/tables/BlockBegin.h"
#include "db/tables/SymbolNames.h"
#include "db/tables/TableAccess.h"
#include "kcdbdatabase.h"

using korva::db::ObjectRecord;
namespace db = korva::db;

namespace {

int64_t recordFlags(const ObjectRecord& record) {
    if (record.type == db::Type::BlockRecord) return db::blockFlags(record);
    return db::fieldInteger(record, db::tableRecordMarker(record.type), 70, 0);
}

// Records the drawing cannot do without under their own name.
bool hasFixedName(const ObjectRecord& record) {
    const std::string_view name = db::recordName(record);
    switch (record.type) {
        case db::Type::Layer: return name == "0";
        case db::Type::Ltype: return db::namesEqual(name, "ByLayer") || db::namesEqual(name, "ByBlock");
        case db::Type::BlockRecord: return db::isModelSpaceName(name) || db::isPaperSpaceName(name);
        default: return false;
    }
}

// Header variables that name the current record of a table follow a rename.
void renameCurrentSetting(db::Drawing& drawing, db::TypeId type, std::string_view oldName, std::string_view newName) {
    struct Setting {
        db::TypeId type;
        std::string_view variable;
        int code;
    };
    static constexpr Setting kSettings[] = {
        {db::Type::Layer, "$CLAYER", 8}, {db::Type::Ltype, "$CELTYPE", 6},
        {db::Type::Style, "$TEXTSTYLE", 7}, {db::Type::DimStyle, "$DIMSTYLE", 2}};
    for (const Setting& setting : kSettings) {
        if (setting.type != type) continue;
        const auto current = drawing.header.getString(setting.variable);
        if (current && db::namesEqual(*current, oldName)) drawing.header.setString(setting.variable, setting.code, newName);
    }
}

}  // namespace

Kcad::ErrorStatus KcDbSymbolTableRecord::getName(wchar_t*& name) const {
    name = db::duplicateWide(db::toApiText(db::recordName(record())));
    return name ? Kcad::eOk : Kcad::eOutOfMemory;
}

Kcad::ErrorStatus KcDbSymbolTableRecord::getName(const wchar_t*& name) const {
    name = keepString(db::toApiText(db::recordName(record())));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbSymbolTableRecord::setName(const wchar_t* name) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const bool isBlock = self.type == db::Type::BlockRecord;
    if (!name || !db::isValidSymbolName(name, isBlock)) return Kcad::eInvalidInput;
    std::string stored = db::toStoredText(name);
    const std::string oldName(db::recordName(self));

    db::SymbolTable* table = db::tableOfRecord(self);
    if (table) {
        if (hasFixedName(self) && stored != oldName) return Kcad::eIllegalReplacement;
        if (isBlock && db::isAnonymousNameRequest(stored)) stored = db::nextAnonymousName(*table, stored[1]);
        const ObjectRecord* other = table->find(stored);
        if (other && other != &self) return Kcad::eDuplicateRecordName;
    }

    if (isBlock) db::renameBlock(self, stored);
    else db::setField(self, db::tableRecordMarker(self.type), db::Tag::string(2, stored));
    if (table) {
        table->invalidateIndex();
        renameCurrentSetting(*self.drawing, self.type, oldName, stored);
    }
    return Kcad::eOk;
}

bool KcDbSymbolTableRecord::isDependent() const {
    const ObjectRecord& self = record();
    return (recordFlags(self) & db::BlockFlag::Dependent) != 0 ||
           db::recordName(self).find('|') != std::string_view::npos;
}

bool KcDbSymbolTableRecord::isResolved() const { return (recordFlags(record()) & db::BlockFlag::Resolved) != 0; }
