// The database API over a drawing: files, tables, dictionaries, current
// settings and deep clones.
#include "kcdbdatabase.h"

#include "db/ApiText.h"
#include "db/DrawingIo.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/TextCase.h"
#include "db/Utf8.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

KcDbDatabase::KcDbDatabase(bool buildDefaultDrawing, bool /*noDocument*/)
    : m_drawing(buildDefaultDrawing ? db::newDrawingFromTemplate() : std::make_unique<db::Drawing>()) {
    m_drawing->database = this;
}

KcDbDatabase::KcDbDatabase(std::unique_ptr<db::Drawing> drawing) : m_drawing(std::move(drawing)) {
    if (!m_drawing) m_drawing = std::make_unique<db::Drawing>();
    m_drawing->database = this;
}

KcDbDatabase::~KcDbDatabase() = default;

KcDbDatabase* KcDbDatabase::of(const db::Drawing& drawing) { return drawing.database; }

Kcad::ErrorStatus KcDbDatabase::readDwgFile(const wchar_t* fileName, int, bool, const wchar_t*) {
    if (!fileName) return Kcad::eInvalidInput;
    const std::string path = db::wideToUtf8(fileName);
    const db::DrawingIo& io = db::drawingIo();
    if (!io.readFile) return Kcad::eNotImplementedYet;
    db::DrawingReadResult result = io.readFile(path);
    if (!result.drawing) {
        return result.error.find("cannot open") != std::string::npos ? Kcad::eFileNotFound : Kcad::eBadDxfFile;
    }
    m_drawing = std::move(result.drawing);
    m_drawing->database = this;
    m_fileName = fileName;
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbDatabase::saveAs(const wchar_t* fileName) {
    if (!fileName) return Kcad::eInvalidInput;
    const db::DrawingIo& io = db::drawingIo();
    if (!io.saveFile) return Kcad::eNotImplementedYet;
    if (!io.saveFile(*m_drawing, db::wideToUtf8(fileName), {}).empty()) return Kcad::eFileWriteError;
    m_fileName = fileName;
    return Kcad::eOk;
}

const wchar_t* KcDbDatabase::getFilename() const { return m_fileName.c_str(); }

namespace {

template <class T>
Kcad::ErrorStatus openRecord(ObjectRecord* record, T*& out, KcDb::OpenMode mode) {
    out = nullptr;
    if (!record) return Kcad::eKeyNotFound;
    return kcdbOpenObject(out, ObjectAccess::id(record), mode);
}

ObjectRecord* tableHead(db::Drawing& drawing, std::string_view name) {
    db::SymbolTable* table = drawing.table(name);
    return table ? table->head : nullptr;
}

// An entry of the named-object dictionary.
ObjectRecord* rootEntry(db::Drawing& drawing, std::string_view key) {
    ObjectRecord* root = drawing.rootDictionary();
    if (!root) return nullptr;
    bool match = false;
    for (db::TagRef tag : root->tags) {
        if (tag.code() == 3) match = db::namesEqual(tag.text(), key);
        else if (match && (tag.code() == 350 || tag.code() == 360)) return drawing.findByHandle(tag.handle());
    }
    return nullptr;
}

}  // namespace

Kcad::ErrorStatus KcDbDatabase::getBlockTable(KcDbBlockTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "BLOCK_RECORD"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getLayerTable(KcDbLayerTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "LAYER"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getLinetypeTable(KcDbLinetypeTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "LTYPE"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getTextStyleTable(KcDbTextStyleTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "STYLE"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getDimStyleTable(KcDbDimStyleTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "DIMSTYLE"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getRegAppTable(KcDbRegAppTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "APPID"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getUCSTable(KcDbUCSTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "UCS"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getViewportTable(KcDbViewportTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "VPORT"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getViewTable(KcDbViewTable*& table, KcDb::OpenMode mode) {
    return openRecord(tableHead(*m_drawing, "VIEW"), table, mode);
}
Kcad::ErrorStatus KcDbDatabase::getNamedObjectsDictionary(KcDbDictionary*& dictionary, KcDb::OpenMode mode) {
    return openRecord(m_drawing->rootDictionary(), dictionary, mode);
}
Kcad::ErrorStatus KcDbDatabase::getGroupDictionary(KcDbDictionary*& dictionary, KcDb::OpenMode mode) {
    return openRecord(rootEntry(*m_drawing, "ACAD_GROUP"), dictionary, mode);
}
Kcad::ErrorStatus KcDbDatabase::getLayoutDictionary(KcDbDictionary*& dictionary, KcDb::OpenMode mode) {
    return openRecord(rootEntry(*m_drawing, "ACAD_LAYOUT"), dictionary, mode);
}

KcDbObjectId KcDbDatabase::blockTableId() const { return ObjectAccess::id(tableHead(*m_drawing, "BLOCK_RECORD")); }
KcDbObjectId KcDbDatabase::layerTableId() const { return ObjectAccess::id(tableHead(*m_drawing, "LAYER")); }
KcDbObjectId KcDbDatabase::textStyleTableId() const { return ObjectAccess::id(tableHead(*m_drawing, "STYLE")); }
KcDbObjectId KcDbDatabase::namedObjectsDictionaryId() const { return ObjectAccess::id(m_drawing->rootDictionary()); }
KcDbObjectId KcDbDatabase::modelSpaceId() const { return ObjectAccess::id(m_drawing->modelSpace()); }
KcDbObjectId KcDbDatabase::paperSpaceId() const { return ObjectAccess::id(m_drawing->paperSpace()); }

namespace {

KcDbObjectId currentRecord(const db::Drawing& drawing, std::string_view variable, std::string_view table,
                           std::string_view fallback) {
    const std::string name = drawing.header.getString(variable).value_or(std::string(fallback));
    ObjectRecord* record = drawing.tableRecord(table, name);
    if (!record) record = drawing.tableRecord(table, fallback);
    return ObjectAccess::id(record);
}

}  // namespace

KcDbObjectId KcDbDatabase::clayer() const { return currentRecord(*m_drawing, "$CLAYER", "LAYER", "0"); }

Kcad::ErrorStatus KcDbDatabase::setClayer(KcDbObjectId layer) {
    ObjectRecord* record = ObjectAccess::record(layer);
    if (!record || record->type != db::Type::Layer || record->erased) return Kcad::eInvalidInput;
    m_drawing->header.setString("$CLAYER", 8, db::recordName(*record));
    return Kcad::eOk;
}

KcDbObjectId KcDbDatabase::textstyle() const { return currentRecord(*m_drawing, "$TEXTSTYLE", "STYLE", "Standard"); }
KcDbObjectId KcDbDatabase::dimstyle() const { return currentRecord(*m_drawing, "$DIMSTYLE", "DIMSTYLE", "Standard"); }
KcDbObjectId KcDbDatabase::celtype() const { return currentRecord(*m_drawing, "$CELTYPE", "LTYPE", "ByLayer"); }
double KcDbDatabase::textsize() const { return m_drawing->header.getReal("$TEXTSIZE").value_or(2.5); }

KcDbObjectId KcDbDatabase::currentSpaceId() const { return ObjectAccess::id(m_drawing->currentSpace()); }

KcGePoint3d KcDbDatabase::ucsorg() const { return m_drawing->header.getPoint("$UCSORG").value_or(KcGePoint3d::kOrigin); }
KcGeVector3d KcDbDatabase::ucsxdir() const {
    return m_drawing->header.getPoint("$UCSXDIR").value_or(KcGePoint3d(1, 0, 0)).asVector();
}
KcGeVector3d KcDbDatabase::ucsydir() const {
    return m_drawing->header.getPoint("$UCSYDIR").value_or(KcGePoint3d(0, 1, 0)).asVector();
}

Kcad::ErrorStatus KcDbDatabase::getKcDbObjectId(KcDbObjectId& id, bool, const KcDbHandle& handle) {
    ObjectRecord* record = m_drawing->findByHandle(handle);
    id = ObjectAccess::id(record);
    return record ? Kcad::eOk : Kcad::eUnknownHandle;
}

bool KcDbIdMapping::compute(KcDbIdPair& pair) const {
    auto it = m_pairs.find(pair.key());
    if (it == m_pairs.end()) return false;
    pair = it->second;
    return true;
}

// --- host application services ---------------------------------------------

namespace {
KcDbHostApplicationServices* g_services = nullptr;
}

KcDbDatabase* KcDbHostApplicationServices::workingDatabase() const { return m_working; }
void KcDbHostApplicationServices::setWorkingDatabase(KcDbDatabase* database) { m_working = database; }
const wchar_t* KcDbHostApplicationServices::getRegistryProductRootKey() const { return L"Software\\Korva\\R1"; }
const wchar_t* KcDbHostApplicationServices::programDirectory() const { return L"./"; }

KcDbHostApplicationServices* kcdbHostApplicationServices() {
    static KcDbHostApplicationServices defaults;
    return g_services ? g_services : &defaults;
}

void kcdbSetHostApplicationServices(KcDbHostApplicationServices* services) { g_services = services; }
