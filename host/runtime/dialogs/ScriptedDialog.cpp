// The loop of a dialog answered from the input.
#include "runtime/dialogs/ScriptedDialog.h"

#include <QCoreApplication>
#include <QDialog>

#include "editor/CommandLoop.h"
#include "editor/InputQueue.h"
#include "runtime/dialogs/ActionPerformer.h"
#include "runtime/dialogs/ControlFinder.h"
#include "runtime/dialogs/DialogAction.h"
#include "runtime/dialogs/DialogEnvironment.h"

namespace korva::runtime {

namespace {

// The script is stopped first, so that nothing the dialog does on cancel reads on.
void stopOnError(const std::wstring& message, const DialogHooks& hooks) {
    editor::CommandLoop::instance().stopScript(message);
    hooks.cancel();
}

}  // namespace

void answerDialogFromInput(QDialog& dialog, const DialogHooks& hooks) {
    editor::InputQueue& input = editor::InputQueue::instance();
    while (!hooks.ended()) {
        const std::wstring prompt = dialogName(dialog) + L": ";
        std::wstring line;
        if (!input.peekLine(line, prompt) || !isDialogActionLine(line)) {
            hooks.cancel();
            return;
        }
        input.nextLine(line, prompt);
        echoDialogAnswer(prompt, line);

        std::wstring error;
        const auto action = parseDialogAction(line, error);
        if (!action) return stopOnError(error, hooks);
        const ControlLookup target = findControlByLabel(dialog, action->label);
        if (!target.control) return stopOnError(target.error, hooks);
        error = performAction(*action, target.control);
        if (!error.empty()) return stopOnError(error, hooks);
        QCoreApplication::processEvents();
    }
}

}  // namespace korva::runtime
