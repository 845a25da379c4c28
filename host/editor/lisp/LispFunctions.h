// Built-in functions of the host's LISP: their argument checks, the table that
// names them, and the groups that fill it (lists, numbers and strings, the
// drawing and its variables, selection sets). Errors use the wording CAD LISPs
// print: "too few arguments", "bad argument type: stringp 12".
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "editor/LispValue.h"
#include "kcadstd.h"

namespace korva::editor::lisp {

// The evaluated arguments of one call, with checks that state what was wrong.
class LispArguments {
public:
    LispArguments(std::wstring_view function, std::vector<LispValue> values, std::wstring& error)
        : function_(function), values_(std::move(values)), error_(error) {}

    size_t size() const { return values_.size(); }
    const LispValue& operator[](size_t index) const { return values_[index]; }
    const std::vector<LispValue>& values() const { return values_; }
    std::wstring_view function() const { return function_; }

    // Between minimum and maximum arguments, or "too few/too many arguments".
    bool expect(size_t minimum, size_t maximum);
    bool text(size_t index, std::wstring& out);
    bool number(size_t index, double& out);
    bool integer(size_t index, int64_t& out);
    bool entityName(size_t index, kcad_name out);
    bool selectionSet(size_t index, kcad_name out);

    // "bad argument type: PREDICATE VALUE" for the argument at index.
    bool badType(const wchar_t* predicate, size_t index);
    bool fail(std::wstring message);

private:
    std::wstring_view function_;
    std::vector<LispValue> values_;
    std::wstring& error_;
};

using LispFunction = bool (*)(LispArguments& arguments, LispValue& result);

// Built-in functions by upper-case name.
class LispFunctionTable {
public:
    void add(std::wstring_view name, LispFunction function);
    LispFunction find(std::wstring_view upperName) const;

private:
    std::unordered_map<std::wstring, LispFunction> functions_;
};

void addListFunctions(LispFunctionTable& table);       // list car cdr cons
void addNumberFunctions(LispFunctionTable& table);     // + - * / itoa rtos atof atoi strcat
void addDrawingFunctions(LispFunctionTable& table);    // handent getvar setvar entget entlast entnext
void addSelectionFunctions(LispFunctionTable& table);  // ssget ssadd sssetfirst

}  // namespace korva::editor::lisp
