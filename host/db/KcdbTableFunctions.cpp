// The C-level table functions, handles and names, and application registration.
#include <charconv>
#include <map>

#include "db/ApiLists.h"
#include "db/ApiText.h"
#include "db/EntityList.h"
#include "db/EntityNames.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "db/TextCase.h"
#include "kcdbdatabase.h"
#include "kcdbfuncs.h"

using korva::db::Drawing;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
using korva::db::workingDrawing;
namespace db = korva::db;
namespace Type = korva::db::Type;
#include "db/tables/SymbolNames.h"

namespace {

// "BLOCK" in the C-level API names the BLOCK_RECORD table.
std::string tableOf(const wchar_t* name) {
    if (!name) return {};
    std::string upper = db::asciiUpper(db::toStoredText(name));
    if (upper == "BLOCK") return "BLOCK_RECORD";
    static const char* const kTables[] = {"LAYER", "LTYPE", "VIEW", "STYLE", "UCS", "APPID", "DIMSTYLE", "VPORT"};
    for (const char* table : kTables) {
        if (upper == table) return upper;
    }
    return {};
}

bool isLayoutTableRecord(const ObjectRecord& record) {
    if (record.type != Type::BlockRecord) return false;
    return record.drawing->isLayoutBlock(&record) || record.drawing->modelSpace() == &record;
}

// The table walk of kcdbTblNext: one position per drawing and table.
std::map<std::pair<uint32_t, std::string>, size_t>& tableCursors() {
    static std::map<std::pair<uint32_t, std::string>, size_t> cursors;
    return cursors;
}

}  // namespace

resbuf* kcdbTblSearch(const wchar_t* tableName, const wchar_t* symbolName, int setNext) {
    Drawing* drawing = workingDrawing();
    const std::string table = tableOf(tableName);
    if (!drawing || table.empty() || !symbolName) return nullptr;
    ObjectRecord* record = drawing->tableRecord(table, db::toStoredText(symbolName));
    if (!record || (table == "BLOCK_RECORD" && isLayoutTableRecord(*record))) return nullptr;
    if (setNext) {
        const auto& records = drawing->table(table)->records;
        for (size_t i = 0; i < records.size(); ++i) {
            if (records[i] == record) tableCursors()[{drawing->serial(), table}] = i + 1;
        }
    }
    return db::toChain(db::tableRecordList(*record), drawing);
}

resbuf* kcdbTblNext(const wchar_t* tableName, int rewind) {
    Drawing* drawing = workingDrawing();
    const std::string table = tableOf(tableName);
    if (!drawing || table.empty() || !drawing->table(table)) return nullptr;
    size_t& cursor = tableCursors()[{drawing->serial(), table}];
    if (rewind) cursor = 0;
    const auto& records = drawing->table(table)->records;
    while (cursor < records.size()) {
        ObjectRecord* record = records[cursor++];
        if (record->erased || (table == "BLOCK_RECORD" && isLayoutTableRecord(*record))) continue;
        return db::toChain(db::tableRecordList(*record), drawing);
    }
    return nullptr;
}

int kcdbTblObjName(const wchar_t* tableName, const wchar_t* symbolName, kcad_name result) {
    db::nameOf(nullptr, result);
    Drawing* drawing = workingDrawing();
    const std::string table = tableOf(tableName);
    if (!drawing || table.empty() || !symbolName) return RTERROR;
    ObjectRecord* record = drawing->tableRecord(table, db::toStoredText(symbolName));
    if (!record) return RTERROR;
    db::nameOf(record, result);
    return RTNORM;
}

int kcdbHandEnt(const wchar_t* handle, kcad_name result) {
    db::nameOf(nullptr, result);
    Drawing* drawing = workingDrawing();
    if (!drawing || !handle) return RTERROR;
    const std::string text = db::toStoredText(handle);
    db::Handle value = 0;
    auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (ec != std::errc() || ptr != text.data() + text.size() || text.empty()) return RTERROR;
    ObjectRecord* record = drawing->findByHandle(value);
    if (!record) return RTERROR;
    db::nameOf(record, result);
    return RTNORM;
}

Kcad::ErrorStatus kcdbGetObjectId(KcDbObjectId& id, const kcad_name ent) {
    ObjectRecord* record = db::recordOf(ent);
    id = ObjectAccess::id(record);
    return record ? Kcad::eOk : Kcad::eInvalidInput;
}

Kcad::ErrorStatus kcdbGetKdsName(kcad_name& ent, KcDbObjectId id) {
    ObjectRecord* record = ObjectAccess::record(id);
    db::nameOf(record, ent);
    return record ? Kcad::eOk : Kcad::eNullObjectId;
}

int kcdbRegApp(const wchar_t* appName) {
    Drawing* drawing = workingDrawing();
    if (!drawing || !appName || kcdbSNValid(appName, 1) != RTNORM) return RTERROR;
    const std::string name = db::toStoredText(appName);
    if (drawing->tableRecord("APPID", name)) return RTERROR;
    db::createTableRecord(*drawing, "APPID", name);
    return RTNORM;
}

int kcdbSNValid(const wchar_t* name, int pipeTest) {
    if (!name) return RTERROR;
    const std::wstring_view text(name);
    if (!db::isValidSymbolName(text, false)) return RTERROR;
    if (pipeTest && text.find(L'|') != std::wstring_view::npos) return RTERROR;
    return RTNORM;
}

