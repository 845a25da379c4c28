// Carrying out a dialog action on the control it names, the way a person would:
// buttons are clicked (so the dialog's handlers run), text is "typed" (the edit
// signals of typing are sent), combo items and list items are chosen with the
// signals of a choice.
#pragma once

#include <string>

#include "runtime/dialogs/DialogAction.h"

class QWidget;

namespace korva::runtime {

// Empty when done; otherwise why the action does not fit the control.
std::wstring performAction(const DialogAction& action, QWidget* control);

}  // namespace korva::runtime
