// A value of the host's small LISP: nil, T, integers, reals, strings, points,
// entity names, selection sets, symbols and lists (quoted data, dotted pairs).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kcge.h"

namespace korva::editor {

struct LispValue {
    enum class Type { Nil, True, Integer, Real, String, Point, EntityName, SelectionSet, Symbol, List, DottedPair };
    Type type = Type::Nil;
    int64_t integer = 0;
    double real = 0.0;
    KcGePoint3d point;
    bool point2d = false;
    std::wstring text;               // String, Symbol
    int64_t name[2] = {0, 0};        // EntityName, SelectionSet
    std::vector<LispValue> items;    // List; DottedPair holds two

    static LispValue nil() { return {}; }
    static LispValue t() {
        LispValue v;
        v.type = Type::True;
        return v;
    }
    static LispValue ofInteger(int64_t i) {
        LispValue v;
        v.type = Type::Integer;
        v.integer = i;
        return v;
    }
    static LispValue ofReal(double r) {
        LispValue v;
        v.type = Type::Real;
        v.real = r;
        return v;
    }
    static LispValue ofString(std::wstring s) {
        LispValue v;
        v.type = Type::String;
        v.text = std::move(s);
        return v;
    }
    static LispValue ofSymbol(std::wstring s) {
        LispValue v;
        v.type = Type::Symbol;
        v.text = std::move(s);
        return v;
    }
    static LispValue ofPoint(const KcGePoint3d& p, bool twoD = false) {
        LispValue v;
        v.type = Type::Point;
        v.point = p;
        v.point2d = twoD;
        return v;
    }
    static LispValue ofName(Type kind, const int64_t n[2]) {
        LispValue v;
        v.type = kind;
        v.name[0] = n[0];
        v.name[1] = n[1];
        return v;
    }
    static LispValue ofList(std::vector<LispValue> items) {
        LispValue v;
        v.type = items.empty() ? Type::Nil : Type::List;
        v.items = std::move(items);
        return v;
    }

    bool isNil() const { return type == Type::Nil; }
    bool isNumber() const { return type == Type::Integer || type == Type::Real; }
    double number() const { return type == Type::Integer ? static_cast<double>(integer) : real; }
    // As the command line prints it: 12, 1.5, "text", (1.0 2.0 0.0), <Entity name: 1f>, ...
    std::wstring print() const;
};

}  // namespace korva::editor
