// ORTHO switches ORTHOMODE. REDRAW and REGEN refresh the screen; the headless
// host has none, so they change nothing (REGEN reports what it would redo).
#include "commands/view/DisplayCommands.h"

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "editor/Document.h"
#include "editor/SystemVariables.h"

namespace korva::commands {

namespace {

void runOrthoCommand() {
    editor::SystemVariables& variables = editor::SystemVariables::instance();
    const bool on = variables.integer(L"ORTHOMODE", 0) == 1;
    const TextAnswer answer =
        askKeyword(std::wstring(L"\nEnter mode [ON/OFF] <") + (on ? L"ON" : L"OFF") + L">: ", L"ON OFF _ ON OFF");
    if (answer.status != RTNORM) return;
    variables.setValue(L"ORTHOMODE", editor::VarValue::ofInteger(editor::VarType::Short, answer.text == L"ON" ? 1 : 0));
}

void runRegenCommand() {
    const editor::Document* document = currentDocument();
    if (!document) return;
    printMessage(document->cvport() == 1 ? L"Regenerating layout." : L"Regenerating model.");
}

}  // namespace

void registerDisplayCommands() {
    addBuiltInCommand(L"ORTHO", runOrthoCommand);
    addBuiltInCommand(L"REDRAW", [] {});
    addBuiltInCommand(L"REGEN", runRegenCommand);
}

}  // namespace korva::commands
