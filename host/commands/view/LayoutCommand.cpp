// -LAYOUT (New, Set, ?) and the switches between paper space and the model
// space of a layout's viewports (MSPACE, PSPACE).
#include "commands/view/LayoutCommand.h"

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "commands/view/Layouts.h"
#include "commands/NamePatterns.h"
#include "db/ApiText.h"
#include "db/tables/SymbolNames.h"
#include "editor/CommandStack.h"
#include "editor/SystemVariables.h"

namespace korva::commands {

namespace {

using editor::Document;

std::wstring currentLayoutName(Document& document) {
    if (editor::SystemVariables::instance().integer(L"TILEMODE", 1) == 1) return L"Model";
    const auto layout = activePaperLayout(document.drawing());
    return layout ? layout->name : L"Layout1";
}

void setLayout(Document& document) {
    const TextAnswer answer =
        askString(L"\nEnter layout to make current <" + currentLayoutName(document) + L">: ", true);
    if (answer.cancelled() || answer.text.empty()) return;
    if (sameText(answer.text, L"Model")) {
        editor::SystemVariables::instance().setValue(L"TILEMODE",
                                                     editor::VarValue::ofInteger(editor::VarType::Short, 1));
        setCurrentViewport(document, 2);
        return;
    }
    const auto layout = findLayout(document.drawing(), answer.text);
    if (!layout || layout->isModel()) {
        printMessage(L"Layout \"" + answer.text + L"\" not found.");
        return;
    }
    makeLayoutCurrent(document, *layout);
}

std::wstring nextLayoutName(const db::Drawing& drawing) {
    for (int n = static_cast<int>(layoutsOf(drawing).size());; ++n) {
        std::wstring name = L"Layout" + std::to_wstring(n);
        if (!findLayout(drawing, name)) return name;
    }
}

void newLayout(Document& document) {
    const std::wstring proposed = nextLayoutName(document.drawing());
    const TextAnswer answer = askString(L"\nEnter name of new layout <" + proposed + L">: ", true);
    if (answer.cancelled()) return;
    const std::wstring name = answer.text.empty() ? proposed : answer.text;
    if (!db::isValidSymbolName(name, false)) {
        refuseAnswer(L"Invalid layout name.");
        return;
    }
    std::wstring reason;
    if (!createLayout(document.drawing(), name, reason)) printMessage(reason);
}

void listLayouts(Document& document) {
    const TextAnswer answer = askString(L"\nEnter layout name(s) to list <*>: ", true);
    if (answer.cancelled()) return;
    const NamePatterns patterns(answer.text.empty() ? L"*" : answer.text);
    printMessage(L"Active Layout: " + currentLayoutName(document));
    for (const LayoutInfo& layout : layoutsOf(document.drawing())) {
        if (!patterns.matches(layout.name)) continue;
        const std::wstring block = layout.block ? db::toApiText(db::recordName(*layout.block)) : std::wstring();
        printMessage(L"Layout: " + layout.name + L"   Block name: " + upperText(block) + L".");
    }
}

void runLayoutCommand() {
    Document* document = currentDocument();
    if (!document) return;
    const TextAnswer option = askKeyword(L"\nEnter layout option [New/Set/?] <set>: ", L"New Set ? _ New Set ?");
    if (option.cancelled()) return;
    if (option.status == RTNONE || option.text == L"Set")
        setLayout(*document);
    else if (option.text == L"New")
        newLayout(*document);
    else
        listLayouts(*document);
}

// MSPACE: the first viewport of the layout that is on becomes current.
void runModelSpaceCommand() {
    Document* document = currentDocument();
    if (!document) return;
    if (document->cvport() != 1) return;  // already in a model-space viewport
    for (const db::ObjectRecord* viewport : viewportsOf(document->drawing().paperSpace())) {
        const int number = viewportNumber(*viewport);
        if (number >= 2 && viewportStatus(*viewport) > 0 && setCurrentViewport(*document, number)) return;
    }
    printMessage(L"There are no active model space viewports.");
}

void runPaperSpaceCommand() {
    Document* document = currentDocument();
    if (!document) return;
    if (document->cvport() == 1) {
        printMessage(L"Already in paper space.");
        return;
    }
    setCurrentViewport(*document, 1);
}

}  // namespace

void registerLayoutCommands() {
    addBuiltInCommand(L"-LAYOUT", runLayoutCommand);
    addBuiltInCommand(L"MSPACE", runModelSpaceCommand, editor::kCmdNoTileMode);
    addBuiltInCommand(L"PSPACE", runPaperSpaceCommand, editor::kCmdNoTileMode);
}

}  // namespace korva::commands
