// The entry points of the host's LISP: script expressions are read and
// evaluated by the interpreter (LispInterpreter.h).
#include "editor/lisp/Lisp.h"

#include "editor/TextInput.h"
#include "editor/lisp/LispData.h"
#include "editor/lisp/LispInterpreter.h"

namespace korva::editor {

bool evaluateLisp(std::wstring_view source, LispValue& value, std::wstring& error) {
    if (!lisp::LispInterpreter::instance().evaluateSource(source, value, error)) return false;
    // The value answers a prompt: a list of two or three numbers is a point there.
    bool twoD = false;
    if (value.type == LispValue::Type::List) {
        if (const auto point = lisp::pointOf(value, &twoD)) value = LispValue::ofPoint(*point, twoD);
    }
    return true;
}

void installLispEvaluator() { setLispEvaluator(&evaluateLisp); }

void setExternalLispFunctions(ExternalLispFunctions functions) {
    lisp::LispInterpreter::instance().setExternalFunctions(std::move(functions));
}

}  // namespace korva::editor
