// A modal dialog answered by the input instead of a person: each following line
// that is a dialog action is echoed and carried out, until the dialog ends. A
// line that is no action, or the end of the input, cancels the dialog and is
// left for what comes next. A mistake in an action (a malformed line, a label
// that names no control or several, an action that does not fit its control)
// is printed with the labels there are, cancels the dialog and stops the script.
#pragma once

#include <functional>

class QDialog;

namespace korva::runtime {

struct DialogHooks {
    std::function<bool()> ended;   // the dialog has ended (EndDialog was called)
    std::function<void()> cancel;  // cancel it as the dialog's model does (OnCancel)
};

void answerDialogFromInput(QDialog& dialog, const DialogHooks& hooks);

}  // namespace korva::runtime
