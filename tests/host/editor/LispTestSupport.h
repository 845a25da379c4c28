// Evaluating one LISP expression in a test: its value, or the error it raised.
#pragma once

#include <string>

#include "editor/lisp/Lisp.h"

namespace korva::test {

struct LispOutcome {
    bool ok = false;
    editor::LispValue value;
    std::wstring error;
};

inline LispOutcome evaluate(const std::wstring& source) {
    LispOutcome outcome;
    outcome.ok = editor::evaluateLisp(source, outcome.value, outcome.error);
    return outcome;
}

}  // namespace korva::test
