// -XREF: Attach (or Overlay) a DXF file as an xref and insert a reference to
// it, Detach an xref with its references and dependent records, Reload one
// from its file, change its Path, or list them (?). The xref's name is the
// file's name without folder and extension.
#include "commands/files/XrefCommand.h"

#include <filesystem>

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "commands/NamePatterns.h"
#include "commands/files/XrefImport.h"
#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/TextCase.h"
#include "db/Utf8.h"
#include "db/tables/BlockBegin.h"
#include "db/tables/SymbolNames.h"
#include "editor/Coordinates.h"
#include "editor/Document.h"
#include "editor/SystemVariables.h"
#include "kcdbdatabase.h"
#include "kced.h"

namespace korva::commands {

namespace {

using editor::Document;
namespace fs = std::filesystem;

std::string xrefPath(const db::ObjectRecord& block) {
    const db::ObjectRecord* begin = db::blockBeginOf(block);
    return begin ? std::string(db::fieldText(*begin, db::kBlockBeginMarker, 1)) : std::string();
}

// A relative path is looked for beside the drawing too.
std::string resolvePath(const Document& document, const std::string& path) {
    std::error_code ec;
    if (fs::exists(path, ec) || fs::path(path).is_absolute() || document.path().empty()) return path;
    const fs::path beside = fs::path(document.path()).parent_path() / path;
    return fs::exists(beside, ec) ? beside.string() : path;
}

std::vector<db::ObjectRecord*> xrefBlocks(const db::Drawing& drawing) {
    std::vector<db::ObjectRecord*> blocks;
    for (db::ObjectRecord* block : drawing.blockOrder) {
        if (!block->erased && isXrefBlock(*block)) blocks.push_back(block);
    }
    return blocks;
}

// The xrefs a name list names; a list that names none is reported.
std::vector<db::ObjectRecord*> askXrefs(Document& document, const std::wstring& prompt) {
    const TextAnswer answer = askString(prompt, true);
    if (answer.cancelled() || answer.text.empty()) return {};
    const NamePatterns patterns(answer.text);
    std::vector<db::ObjectRecord*> named;
    for (db::ObjectRecord* block : xrefBlocks(document.drawing())) {
        if (patterns.matches(db::toApiText(db::recordName(*block)))) named.push_back(block);
    }
    if (named.empty()) printMessage(L"No matching xref names found.");
    return named;
}

// The reference: insertion point, scales and rotation, into the current space.
void insertReference(Document& document, db::ObjectRecord& xrefBlock) {
    double point[3] = {0, 0, 0};
    if (kcedGetPoint(nullptr, L"\nSpecify insertion point: ", point) != RTNORM) return;
    double xScale = 1.0;
    int status = kcedGetReal(L"\nEnter X scale factor <1>: ", &xScale);
    if (status != RTNORM && status != RTNONE) return;
    if (status == RTNONE) xScale = 1.0;
    double yScale = xScale;
    status = kcedGetReal(L"\nEnter Y scale factor <use X scale factor>: ", &yScale);
    if (status != RTNORM && status != RTNONE) return;
    if (status == RTNONE || yScale == 0.0) yScale = xScale;
    double rotation = 0.0;
    status = kcedGetAngle(point, L"\nSpecify rotation angle <0>: ", &rotation);
    if (status != RTNORM && status != RTNONE) return;
    if (status == RTNONE) rotation = 0.0;

    db::Drawing& drawing = document.drawing();
    KcDbBlockTableRecord* space = nullptr;
    if (kcdbOpenObject(space, db::ObjectAccess::id(drawing.currentSpace()), KcDb::kForWrite) != Kcad::eOk) return;
    auto* reference = new KcDbBlockReference(editor::ucsPointToWorld({point[0], point[1], point[2]}),
                                             db::ObjectAccess::id(&xrefBlock));
    reference->setScaleFactors(KcGeScale3d(xScale, yScale, xScale));
    reference->setRotation(rotation);
    if (space->appendKcDbEntity(reference) == Kcad::eOk)
        reference->close();
    else
        delete reference;
    space->close();
}

void attach(Document& document, bool overlay) {
    const TextAnswer answer =
        askString(overlay ? L"\nEnter name of file to overlay: " : L"\nEnter name of file to attach: ", true);
    if (answer.cancelled() || answer.text.empty()) return;
    const std::string path = resolvePath(document, db::wideToUtf8(answer.text));
    const std::wstring name = db::utf8ToWide(fs::path(path).stem().string());
    db::Drawing& drawing = document.drawing();
    if (!db::isValidSymbolName(name, true) || name.front() == L'*') {
        printMessage(L"\"" + name + L"\" is not a valid xref name.");
        return;
    }
    db::ObjectRecord* block = drawing.tableRecord("BLOCK_RECORD", db::toStoredText(name));
    if (block && !isXrefBlock(*block)) {
        printMessage(L"A block named \"" + name + L"\" already exists; the xref was not attached.");
        return;
    }
    if (block) {
        printMessage(L"Xref \"" + name + L"\" has already been loaded.");
    } else {
        block = &db::createBlock(drawing, db::toStoredText(name));
        const std::string error = loadXrefFile(drawing, *block, path);
        if (!error.empty()) {
            detachXref(drawing, *block);
            printMessage(L"** Error: the xref file " + answer.text + L" could not be read: " + db::utf8ToWide(error));
            return;
        }
        if (overlay) db::setBlockFlags(*block, db::blockFlags(*block) | db::BlockFlag::Overlay);
        printMessage(L"Attach Xref \"" + name + L"\": " + answer.text);
        printMessage(L"\"" + name + L"\" loaded.");
    }
    insertReference(document, *block);
}

void detach(Document& document) {
    db::Drawing& drawing = document.drawing();
    for (db::ObjectRecord* block : askXrefs(document, L"\nEnter xref name(s) to detach: ")) {
        const std::wstring name = db::toApiText(db::recordName(*block));
        detachXref(drawing, *block);
        printMessage(L"Detaching Xref \"" + name + L"\".");
    }
    // The current layer cannot be one of the layers that went with the xref.
    editor::SystemVariables& variables = editor::SystemVariables::instance();
    if (!drawing.tableRecord("LAYER", db::toStoredText(variables.text(L"CLAYER")))) {
        variables.setValue(L"CLAYER", editor::VarValue::ofText(L"0"));
    }
}

void reload(Document& document) {
    db::Drawing& drawing = document.drawing();
    for (db::ObjectRecord* block : askXrefs(document, L"\nEnter xref name(s) to reload: ")) {
        const std::wstring name = db::toApiText(db::recordName(*block));
        const std::string path = resolvePath(document, xrefPath(*block));
        const int64_t overlay = db::blockFlags(*block) & db::BlockFlag::Overlay;
        printMessage(L"Reload Xref \"" + name + L"\": " + db::utf8ToWide(path));
        clearXrefContents(drawing, *block);
        const std::string error = loadXrefFile(drawing, *block, path);
        if (!error.empty()) {
            // The xref stays, unresolved (no BLOCK flag 32), until its file can be read again.
            db::setBlockFlags(*block, db::BlockFlag::External | overlay);
            printMessage(L"** Error: the xref file could not be read: " + db::utf8ToWide(error));
            continue;
        }
        db::setBlockFlags(*block, db::blockFlags(*block) | overlay);
        printMessage(L"\"" + name + L"\" loaded.");
    }
}

void changePath(Document& document) {
    for (db::ObjectRecord* block : askXrefs(document, L"\nEdit path for which xref(s): ")) {
        const std::wstring name = db::toApiText(db::recordName(*block));
        printMessage(L"Xref name: " + name);
        printMessage(L"Old path: " + db::utf8ToWide(xrefPath(*block)));
        const TextAnswer answer = askString(L"\nEnter new path: ", true);
        if (answer.cancelled()) return;
        if (answer.text.empty()) continue;
        db::setField(db::blockBeginForWrite(*block), db::kBlockBeginMarker,
                     db::Tag::string(1, db::wideToUtf8(answer.text)));
    }
}

void listXrefs(Document& document) {
    const TextAnswer answer = askString(L"\nEnter xref(s) to list <*>: ", true);
    if (answer.cancelled()) return;
    const NamePatterns patterns(answer.text.empty() ? L"*" : answer.text);
    size_t count = 0;
    printMessage(L"Xref Name               Path");
    for (db::ObjectRecord* block : xrefBlocks(document.drawing())) {
        std::wstring name = db::toApiText(db::recordName(*block));
        if (!patterns.matches(name)) continue;
        ++count;
        if (name.size() < 24) name.append(24 - name.size(), L' ');
        printMessage(name + db::utf8ToWide(xrefPath(*block)));
    }
    printMessage(L"Total Xref(s): " + std::to_wstring(count));
}

void runXrefCommand() {
    Document* document = currentDocument();
    if (!document) return;
    const TextAnswer option = askKeyword(L"\nEnter an option [?/Detach/Path/Reload/Overlay/Attach] <Attach>: ",
                                         L"? Detach Path Reload Overlay Attach _ ? Detach Path Reload Overlay Attach");
    if (option.cancelled()) return;
    if (option.status == RTNONE || option.text == L"Attach")
        attach(*document, false);
    else if (option.text == L"Overlay")
        attach(*document, true);
    else if (option.text == L"Detach")
        detach(*document);
    else if (option.text == L"Reload")
        reload(*document);
    else if (option.text == L"Path")
        changePath(*document);
    else
        listXrefs(*document);
}

}  // namespace

void registerXrefCommand() { addBuiltInCommand(L"-XREF", runXrefCommand); }

}  // namespace korva::commands
