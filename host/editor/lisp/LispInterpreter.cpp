// Evaluation of LISP forms: special forms, built-in functions and the functions
// modules define.
#include "editor/lisp/LispInterpreter.h"

#include <vector>

#include "db/ResultBuffers.h"
#include "editor/lisp/LispReader.h"
#include "editor/lisp/LispResbuf.h"

namespace korva::editor::lisp {

namespace {

using Type = LispValue::Type;

constexpr int kMaxDepth = 256;  // a limit on nesting instead of a stack overflow

bool fail(std::wstring& error, std::wstring why) {
    error = std::move(why);
    return false;
}

}  // namespace

LispInterpreter& LispInterpreter::instance() {
    static LispInterpreter interpreter;
    return interpreter;
}

LispInterpreter::LispInterpreter() {
    addListFunctions(builtIns_);
    addNumberFunctions(builtIns_);
    addDrawingFunctions(builtIns_);
    addSelectionFunctions(builtIns_);
}

bool LispInterpreter::evaluateSource(std::wstring_view source, LispValue& value, std::wstring& error) {
    std::vector<LispValue> forms;
    if (!readForms(source, forms, error)) return false;
    value = LispValue::nil();
    for (const LispValue& form : forms) {
        if (!evaluate(form, value, error)) return false;
    }
    return true;
}

bool LispInterpreter::evaluate(const LispValue& form, LispValue& value, std::wstring& error, int depth) {
    if (depth > kMaxDepth) return fail(error, L"the expression is nested too deeply");
    switch (form.type) {
        case Type::Symbol: {
            auto it = variables_.find(form.text);
            value = it == variables_.end() ? LispValue::nil() : it->second;
            return true;
        }
        case Type::List: return call(form, value, error, depth);
        case Type::DottedPair: return fail(error, L"bad function: " + form.print());
        default: value = form; return true;
    }
}

bool LispInterpreter::call(const LispValue& form, LispValue& value, std::wstring& error, int depth) {
    const LispValue& head = form.items.front();
    if (head.type != Type::Symbol) return fail(error, L"bad function: " + head.print());
    const std::wstring& name = head.text;  // the reader spells symbols in upper case
    if (name == L"QUOTE") {
        if (form.items.size() != 2) return fail(error, form.items.size() < 2 ? L"too few arguments" : L"too many arguments");
        value = form.items[1];
        return true;
    }
    if (name == L"SETQ") return setq(form, value, error, depth);

    std::vector<LispValue> arguments;
    for (size_t i = 1; i < form.items.size(); ++i) {
        LispValue argument;
        if (!evaluate(form.items[i], argument, error, depth + 1)) return false;
        arguments.push_back(std::move(argument));
    }
    if (LispFunction function = builtIns_.find(name)) {
        LispArguments checked(name, std::move(arguments), error);
        return function(checked, value);
    }
    return callExternal(name, arguments, value, error);
}

// (setq name value [name value] ...): the value is the last one assigned.
bool LispInterpreter::setq(const LispValue& form, LispValue& value, std::wstring& error, int depth) {
    if (form.items.size() < 3 || form.items.size() % 2 == 0) return fail(error, L"too few arguments");
    for (size_t i = 1; i < form.items.size(); i += 2) {
        if (form.items[i].type != Type::Symbol) return fail(error, L"bad argument type: symbolp " + form.items[i].print());
        if (!evaluate(form.items[i + 1], value, error, depth + 1)) return false;
        variables_[form.items[i].text] = value;
    }
    return true;
}

bool LispInterpreter::callExternal(const std::wstring& name, const std::vector<LispValue>& arguments, LispValue& value,
                                   std::wstring& error) {
    if (!external_.exists || !external_.call || !external_.exists(name)) return fail(error, L"no function definition: " + name);
    resbuf* chain = argumentsToResbufs(arguments, error);
    if (!error.empty()) return false;
    value = LispValue::nil();
    const bool called = external_.call(name, chain, value, error);
    db::releaseResbufs(chain);
    if (!called && error.empty()) error = L"the function " + name + L" failed";
    return called;
}

}  // namespace korva::editor::lisp
