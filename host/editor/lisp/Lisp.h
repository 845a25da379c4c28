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

// Evaluates the expressions of a script text; the value is the last one's. A
// list of two or three numbers comes back as a point value, so that '(1.0 2.0)
// answers a point prompt. False with the reason when reading or evaluating fails.
bool evaluateLisp(std::wstring_view source, LispValue& value, std::wstring& error);

// Makes evaluateLisp the evaluator of script input.
void installLispEvaluator();

// Functions defined by modules: the runtime resolves a name and calls it with
// its arguments (a result-buffer chain, see LispResbuf.h; lists of reals arrive
// as points), returning its result. Names arrive in upper case, as the reader
// spells symbols. A failed call may leave error empty: the host then names the
// function in its message. Built-in functions are looked up first.
struct ExternalLispFunctions {
    std::function<bool(std::wstring_view name)> exists;
    std::function<bool(std::wstring_view name, const resbuf* arguments, LispValue& result, std::wstring& error)> call;
};
void setExternalLispFunctions(ExternalLispFunctions functions);

}  // namespace korva::editor
