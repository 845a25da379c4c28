// Argument checks of built-in functions and the table of their names.
#include "editor/lisp/LispFunctions.h"

#include "editor/lisp/LispData.h"

namespace korva::editor::lisp {

bool LispArguments::expect(size_t minimum, size_t maximum) {
    if (values_.size() < minimum) return fail(L"too few arguments");
    if (values_.size() > maximum) return fail(L"too many arguments");
    return true;
}

bool LispArguments::text(size_t index, std::wstring& out) {
    if (values_[index].type != LispValue::Type::String) return badType(L"stringp", index);
    out = values_[index].text;
    return true;
}

bool LispArguments::number(size_t index, double& out) {
    if (!values_[index].isNumber()) return badType(L"numberp:", index);
    out = values_[index].number();
    return true;
}

bool LispArguments::integer(size_t index, int64_t& out) {
    if (values_[index].type != LispValue::Type::Integer) return badType(L"fixnump:", index);
    out = values_[index].integer;
    return true;
}

bool LispArguments::entityName(size_t index, kcad_name out) {
    if (values_[index].type != LispValue::Type::EntityName) return badType(L"lentityp", index);
    out[0] = values_[index].name[0];
    out[1] = values_[index].name[1];
    return true;
}

bool LispArguments::selectionSet(size_t index, kcad_name out) {
    if (values_[index].type != LispValue::Type::SelectionSet) return badType(L"lselsetp", index);
    out[0] = values_[index].name[0];
    out[1] = values_[index].name[1];
    return true;
}

bool LispArguments::badType(const wchar_t* predicate, size_t index) {
    return fail(std::wstring(L"bad argument type: ") + predicate + L" " + values_[index].print());
}

bool LispArguments::fail(std::wstring message) {
    error_ = std::move(message);
    return false;
}

void LispFunctionTable::add(std::wstring_view name, LispFunction function) { functions_[upperName(name)] = function; }

LispFunction LispFunctionTable::find(std::wstring_view upperName) const {
    auto it = functions_.find(std::wstring(upperName));
    return it == functions_.end() ? nullptr : it->second;
}

}  // namespace korva::editor::lisp
