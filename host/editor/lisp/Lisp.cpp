// Placeholder until the LISP evaluator lands: every expression is refused.
#include "editor/lisp/Lisp.h"

#include "editor/TextInput.h"

namespace korva::editor {

bool evaluateLisp(std::wstring_view, LispValue&, std::wstring& error) {
    error = L"LISP is not available";
    return false;
}

void installLispEvaluator() { setLispEvaluator(&evaluateLisp); }

void setExternalLispFunctions(ExternalLispFunctions) {}

}  // namespace korva::editor
