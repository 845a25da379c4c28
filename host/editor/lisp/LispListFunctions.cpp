// List functions of scripts: list, car, cdr, cons and assoc. A point value
// behaves as the list of its coordinates; a dotted pair's cdr is its second item.
#include "editor/lisp/LispData.h"
#include "editor/lisp/LispFunctions.h"

namespace korva::editor::lisp {

namespace {

using Type = LispValue::Type;

bool isPairOrList(const LispValue& value) { return isListValue(value) || value.type == Type::DottedPair; }

bool list(LispArguments& arguments, LispValue& result) {
    result = LispValue::ofList(arguments.values());
    return true;
}

bool car(LispArguments& arguments, LispValue& result) {
    if (!arguments.expect(1, 1)) return false;
    const LispValue& value = arguments[0];
    if (!isPairOrList(value)) return arguments.badType(L"consp", 0);
    const std::vector<LispValue> items = value.type == Type::DottedPair ? value.items : itemsOf(value);
    result = items.empty() ? LispValue::nil() : items.front();
    return true;
}

bool cdr(LispArguments& arguments, LispValue& result) {
    if (!arguments.expect(1, 1)) return false;
    const LispValue& value = arguments[0];
    if (!isPairOrList(value)) return arguments.badType(L"consp", 0);
    if (value.type == Type::DottedPair) {
        result = value.items[1];
        return true;
    }
    std::vector<LispValue> items = itemsOf(value);
    if (!items.empty()) items.erase(items.begin());
    result = LispValue::ofList(std::move(items));
    return true;
}

// (cons a list) puts a in front; (cons a atom) makes the dotted pair (a . atom).
bool cons(LispArguments& arguments, LispValue& result) {
    if (!arguments.expect(2, 2)) return false;
    const LispValue& rest = arguments[1];
    if (isListValue(rest)) {
        std::vector<LispValue> items = itemsOf(rest);
        items.insert(items.begin(), arguments[0]);
        result = LispValue::ofList(std::move(items));
        return true;
    }
    result = LispValue();
    result.type = Type::DottedPair;
    result.items = {arguments[0], rest};
    return true;
}

// (assoc key alist): the first item of alist whose car equals key, or nil.
bool assoc(LispArguments& arguments, LispValue& result) {
    if (!arguments.expect(2, 2)) return false;
    if (!isListValue(arguments[1])) return arguments.badType(L"listp", 1);
    result = LispValue::nil();
    for (const LispValue& item : itemsOf(arguments[1])) {
        const bool keyed = (item.type == Type::List || item.type == Type::DottedPair) && !item.items.empty();
        if (keyed && equalValues(item.items.front(), arguments[0])) {
            result = item;
            break;
        }
    }
    return true;
}

}  // namespace

void addListFunctions(LispFunctionTable& table) {
    table.add(L"list", &list);
    table.add(L"car", &car);
    table.add(L"cdr", &cdr);
    table.add(L"cons", &cons);
    table.add(L"assoc", &assoc);
}

}  // namespace korva::editor::lisp
