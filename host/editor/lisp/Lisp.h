// The small LISP of scripts: (handent "2A"), (getvar "NAME"), (setvar "NAME" v),
// (ssget ...), (ssadd ...), (sssetfirst nil ss), quoted lists and dotted pairs,
// and the functions modules define with kcedDefunEx.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "editor/LispValue.h"
#include "kcadstd.h"

namespace korva::editor {

// Evaluates one expression; false with the reason when it fails.
bool evaluateLisp(std::wstring_view source, LispValue& value, std::wstring& error);

// Makes evaluateLisp the evaluator of script input.
void installLispEvaluator();

// Functions defined by modules: the runtime resolves a name and calls it with
// its arguments (a result-buffer chain), returning its result.
struct ExternalLispFunctions {
    std::function<bool(std::wstring_view name)> exists;
    std::function<bool(std::wstring_view name, const resbuf* arguments, LispValue& result, std::wstring& error)> call;
};
void setExternalLispFunctions(ExternalLispFunctions functions);

}  // namespace korva::editor
