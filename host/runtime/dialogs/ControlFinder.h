// Finding the control a dialog action names. A label is matched, without regard
// to case and to "&" marks, first against object names, then against the text
// of buttons, check boxes and radio buttons, then against the text of a label,
// which names the label's buddy (a trailing ":" may be left out). Only visible
// controls of the dialog's own window count; the first of these steps that finds
// any decides. A disabled control found is an error, so is more than one.
#pragma once

#include <string>
#include <string_view>

class QDialog;
class QWidget;

namespace korva::runtime {

struct ControlLookup {
    QWidget* control = nullptr;
    std::wstring error;  // when there is no control: why, with the labels there are
};

ControlLookup findControlByLabel(QDialog& dialog, std::wstring_view label);
// The labels a script may use in the dialog now, for error messages.
std::wstring candidateLabels(QDialog& dialog);
// "check box "UPPERCASE" (radioUpper)": what a control is, for messages.
std::wstring describeControl(const QWidget* control);
// The dialog as messages and prompts name it: its title, else its object name.
std::wstring dialogName(const QDialog& dialog);

}  // namespace korva::runtime
