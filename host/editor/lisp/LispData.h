// Small facts about LISP values that the reader, the evaluator and the built-in
// functions share: truth, the items of a list (a point value counts as the list
// of its coordinates), points written as lists of two or three numbers, and the
// upper-case spelling under which symbols and function names are compared.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editor/LispValue.h"
#include "kcge.h"

namespace korva::editor::lisp {

// nil is false; every other value is true.
inline bool isTrue(const LispValue& value) { return !value.isNil(); }

// Whether a value is a proper list (nil, a list, or a point value).
bool isListValue(const LispValue& value);
// The items of a proper list; a point gives its two or three coordinates as reals.
std::vector<LispValue> itemsOf(const LispValue& value);

// A point value, or a list of two or three numbers; twoD tells which.
std::optional<KcGePoint3d> pointOf(const LispValue& value, bool* twoD = nullptr);
// Whether a list holds two or three numbers and nothing else.
bool isNumberList(const LispValue& value);

// Structural equality: numbers by value (1 equals 1.0), texts, names, lists item by item.
bool equalValues(const LispValue& a, const LispValue& b);

// Symbols and function names are compared without regard to case.
std::wstring upperName(std::wstring_view name);

}  // namespace korva::editor::lisp
