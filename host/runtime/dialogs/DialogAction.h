// One line of a script that acts on an open dialog:
//   @check LABEL, @uncheck LABEL, @press LABEL, @set LABEL = VALUE,
//   @pick LABEL = ITEM;ITEM
// The action word is read without regard to case; blanks around the label,
// the value and each item are dropped.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korva::runtime {

enum class ActionKind { Check, Uncheck, Set, Pick, Press };

struct DialogAction {
    ActionKind kind = ActionKind::Press;
    std::wstring label;
    std::wstring value;               // @set
    std::vector<std::wstring> items;  // @pick (none: select nothing)
};

// A line meant for a dialog: "@" and a letter ("@10,0" is a relative point).
bool isDialogActionLine(std::wstring_view line);
// The action of a line, or nothing with the reason in `error`.
std::optional<DialogAction> parseDialogAction(std::wstring_view line, std::wstring& error);
std::wstring_view actionWord(ActionKind kind);

}  // namespace korva::runtime
