// The modes of kcedSSGet: the mode string split into its main part ("X", "I",
// "W", "C", "F", "WP", "CP", "P", "L", "A", or nothing and "-M" for an
// interactive selection) and its ":" options ("$" own prompts, "K" keywords,
// "L" no locked layers, "S" single step; "E" and "N" are accepted and ignored).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "db/ObjectRecord.h"
#include "kcadstd.h"

namespace korva::editor {

struct SelectionMode {
    std::wstring main;  // upper case, without "_"; empty for interactive
    bool ownPrompts = false;
    bool keywords = false;
    bool rejectLocked = false;
    bool single = false;
};

// Nothing for a mode string the host does not know.
std::optional<SelectionMode> parseSelectionMode(const wchar_t* mode);

// Runs a selection; RTNORM with at least one entity, RTERROR, or RTCAN.
int runSelection(const SelectionMode& mode, const void* arg1, const void* arg2, const resbuf* filter,
                 std::vector<db::ObjectRecord*>& result);

}  // namespace korva::editor
