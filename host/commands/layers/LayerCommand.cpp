// -LAYER: an option loop over the layer table. Every option reads its own
// answers and comes back to the option prompt; Enter there ends the command.
// Options and names are compared without regard to case, and the keyword list
// gives the usual abbreviations ("LO" LOck, "U" Unlock, "_OFF" ...). As in CAD
// scripts, a space ends a name; names with spaces come as whole arguments of
// kcedCommand.
#include "commands/layers/LayerCommand.h"

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "commands/layers/LayerOptions.h"
#include "db/ApiText.h"
#include "db/RecordFields.h"
#include "db/TextCase.h"
#include "db/tables/SymbolNames.h"
#include "editor/Document.h"
#include "editor/SystemVariables.h"

namespace korva::commands {

namespace layer {

namespace {

constexpr const wchar_t* kOptionPrompt =
    L"\nEnter an option [?/Make/Set/New/ON/OFF/Color/Ltype/LWeight/Freeze/Thaw/LOck/Unlock]: ";
constexpr const wchar_t* kOptionKeywords =
    L"? Make Set New ON OFF Color Ltype LWeight Freeze Thaw LOck Unlock _ "
    L"? Make Set New ON OFF Color Ltype LWeight Freeze Thaw LOck Unlock";

bool isFrozen(const db::ObjectRecord& layer) { return (db::fieldInteger(layer, {}, 70, 0) & 1) != 0; }

// Makes a layer current through CLAYER (which refuses missing and frozen layers).
bool makeCurrent(const db::ObjectRecord& layer) {
    return editor::SystemVariables::instance().setValue(L"CLAYER", editor::VarValue::ofText(layerName(layer))) ==
           RTNORM;
}

// A new layer with the defaults of the layer table (colour 7, Continuous).
db::ObjectRecord* createLayer(db::Drawing& drawing, const std::wstring& name) {
    KcDbDatabase* database = drawing.database;
    KcDbLayerTable* table = nullptr;
    if (!database || database->getLayerTable(table, KcDb::kForWrite) != Kcad::eOk) return nullptr;
    auto* layer = new KcDbLayerTableRecord();
    KcDbObjectId id;
    Kcad::ErrorStatus status = layer->setName(name.c_str());
    if (status == Kcad::eOk) status = table->add(id, layer);
    table->close();
    if (status != Kcad::eOk) {
        delete layer;
        return nullptr;
    }
    layer->close();
    return db::ObjectAccess::record(id);
}

std::optional<std::wstring> askLayerName(const std::wstring& prompt) {
    const TextAnswer answer = askString(prompt, false);
    if (answer.cancelled()) return std::nullopt;
    return answer.text;
}

bool runOption(db::Drawing& drawing, const std::wstring& option) {
    if (option == L"?") return listLayers(drawing);
    if (option == L"Make") return makeLayer(drawing);
    if (option == L"Set") return setCurrentLayer(drawing);
    if (option == L"New") return newLayers(drawing);
    if (option == L"ON") return turnOn(drawing);
    if (option == L"OFF") return turnOff(drawing);
    if (option == L"Color") return setColor(drawing);
    if (option == L"Ltype") return setLinetype(drawing);
    if (option == L"LWeight") return setLineweight(drawing);
    if (option == L"Freeze") return freeze(drawing);
    if (option == L"Thaw") return thaw(drawing);
    if (option == L"LOck") return lock(drawing);
    if (option == L"Unlock") return unlock(drawing);
    return true;
}

void runLayerCommand() {
    editor::Document* document = currentDocument();
    if (!document) return;
    db::Drawing& drawing = document->drawing();
    while (true) {
        const TextAnswer option = askKeyword(kOptionPrompt, kOptionKeywords);
        if (option.status != RTNORM) return;
        if (!runOption(drawing, option.text)) return;
    }
}

}  // namespace

std::wstring currentLayerName() { return editor::SystemVariables::instance().text(L"CLAYER"); }

std::wstring layerName(const db::ObjectRecord& layer) { return db::toApiText(db::recordName(layer)); }

bool isCurrentLayer(const db::ObjectRecord& layer) {
    return db::namesEqual(db::recordName(layer), db::toStoredText(currentLayerName()));
}

std::optional<NamePatterns::TableMatch> askLayers(db::Drawing& drawing, const std::wstring& prompt,
                                                  const std::wstring& defaultList) {
    const TextAnswer answer = askString(prompt, false);
    if (answer.cancelled()) return std::nullopt;
    const NamePatterns patterns(answer.text.empty() ? defaultList : answer.text);
    NamePatterns::TableMatch match = patterns.matchRecords(drawing.table("LAYER"));
    for (const std::wstring& pattern : match.unmatched)
        printMessage(L"No matching layer names found for \"" + pattern + L"\".");
    return match;
}

// Make: the layer is created when missing, and becomes current.
bool makeLayer(db::Drawing& drawing) {
    const auto name =
        askLayerName(L"\nEnter name for new layer (becomes the current layer) <" + currentLayerName() + L">: ");
    if (!name) return false;
    if (name->empty()) return true;
    db::ObjectRecord* layer = drawing.tableRecord("LAYER", db::toStoredText(*name));
    if (!layer) {
        if (!db::isValidSymbolName(*name, false)) {
            refuseAnswer(L"Invalid layer name.");
            return true;
        }
        layer = createLayer(drawing, *name);
        if (!layer) {
            printMessage(L"Layer \"" + *name + L"\" could not be created.");
            return true;
        }
    }
    if (isFrozen(*layer)) {
        printMessage(L"Cannot make layer \"" + layerName(*layer) + L"\" current.  It is frozen.");
        return true;
    }
    makeCurrent(*layer);
    return true;
}

// Set: an existing, thawed layer becomes current.
bool setCurrentLayer(db::Drawing& drawing) {
    const auto name = askLayerName(L"\nEnter layer name to make current or <select object>: ");
    if (!name) return false;
    if (name->empty()) return true;
    const db::ObjectRecord* layer = drawing.tableRecord("LAYER", db::toStoredText(*name));
    if (!layer) {
        printMessage(L"Cannot find layer \"" + *name + L"\".");
    } else if (isFrozen(*layer)) {
        printMessage(L"Cannot set current layer to frozen layer \"" + layerName(*layer) + L"\".");
    } else {
        makeCurrent(*layer);
    }
    return true;
}

// New: one layer per name of a comma-separated list; existing names stay as they are.
bool newLayers(db::Drawing& drawing) {
    const auto list = askLayerName(L"\nEnter name list for new layer(s): ");
    if (!list) return false;
    for (const std::wstring& name : splitNameList(*list)) {
        if (drawing.tableRecord("LAYER", db::toStoredText(name))) {
            printMessage(L"Layer \"" + name + L"\" already exists.");
        } else if (!db::isValidSymbolName(name, false)) {
            printMessage(L"Invalid layer name \"" + name + L"\".");
        } else if (!createLayer(drawing, name)) {
            printMessage(L"Layer \"" + name + L"\" could not be created.");
        }
    }
    return true;
}

}  // namespace layer

void registerLayerCommand() { addBuiltInCommand(L"-LAYER", layer::runLayerCommand); }

}  // namespace korva::commands
