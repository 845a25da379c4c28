// One answer from the input: typed text, a bare Enter, a cancel, the end of all
// input, or a value (the result of a LISP expression, or a typed argument of a
// scripted command).
#pragma once

#include <string>

#include "editor/LispValue.h"

namespace korva::editor {

struct InputToken {
    enum class Kind { Text, Enter, Cancel, EndOfInput, Value };
    Kind kind = Kind::EndOfInput;
    std::wstring text;  // Text: what was typed
    LispValue value;    // Value
    bool fromTerminal = false;  // typed at a terminal, which already shows it

    static InputToken ofText(std::wstring t) { return {Kind::Text, std::move(t), {}, false}; }
    static InputToken enter() { return {Kind::Enter, {}, {}, false}; }
    static InputToken cancel() { return {Kind::Cancel, {}, {}, false}; }
    static InputToken end() { return {Kind::EndOfInput, {}, {}, false}; }
    static InputToken ofValue(LispValue v) { return {Kind::Value, {}, std::move(v), false}; }
    bool isText() const { return kind == Kind::Text; }
};

// What a prompt waits for, so that a source can split its text accordingly.
struct InputRequest {
    std::wstring prompt;       // shown by an interactive source
    bool allowSpaces = false;  // a string prompt that takes spaces: only a line end ends the input
};

}  // namespace korva::editor
