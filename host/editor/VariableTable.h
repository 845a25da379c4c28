// The definitions of the system variables the host knows by name.
#pragma once

#include <string_view>

#include "editor/SystemVariables.h"

namespace korva::editor {

enum class VarStore {
    Header,    // the drawing header, as $NAME
    Viewport,  // the current view (the "*Active" viewport record, or paper space's view)
    Document,  // per open drawing, not saved
    Session,   // for the run of the host
    Profile,   // the user's profile
};

struct VariableSpec {
    std::wstring_view name;
    VarType type;
    VarStore store;
    bool readOnly;
    double minimum;  // for numbers; minimum > maximum means "no range"
    double maximum;
    double number;   // default of a number (the x of a point)
    double y = 0.0, z = 0.0;
    std::wstring_view text = {};  // default of a string
    int headerCode = 0;           // the group code a new header variable gets
};

const VariableSpec* findVariable(std::wstring_view name);

}  // namespace korva::editor
