// The evaluator of the host's LISP. A form evaluates as follows: numbers,
// strings, nil, T and other data are themselves; a symbol is the value setq gave
// it (nil when none); a list calls the function its first symbol names: the
// special forms quote and setq, a built-in function (LispFunctions.h), or a
// function a module defined, through the runtime's ExternalLispFunctions.
// Anything else is the error "no function definition: NAME".
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "editor/LispValue.h"
#include "editor/lisp/Lisp.h"
#include "editor/lisp/LispFunctions.h"

namespace korva::editor::lisp {

class LispInterpreter {
public:
    static LispInterpreter& instance();

    // Reads and evaluates every form of the text; the value is the last one's.
    bool evaluateSource(std::wstring_view source, LispValue& value, std::wstring& error);
    bool evaluate(const LispValue& form, LispValue& value, std::wstring& error, int depth = 0);

    void setExternalFunctions(ExternalLispFunctions functions) { external_ = std::move(functions); }
    // Forgets the values setq gave (tests start clean).
    void clearVariables() { variables_.clear(); }

private:
    LispInterpreter();
    bool call(const LispValue& form, LispValue& value, std::wstring& error, int depth);
    bool setq(const LispValue& form, LispValue& value, std::wstring& error, int depth);
    bool callExternal(const std::wstring& name, const std::vector<LispValue>& arguments, LispValue& value,
                      std::wstring& error);

    LispFunctionTable builtIns_;
    std::map<std::wstring, LispValue> variables_;
    ExternalLispFunctions external_;
};

}  // namespace korva::editor::lisp
