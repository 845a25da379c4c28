// Shared facts about LISP values: truth, list items and points.
#include "editor/lisp/LispData.h"

#include <cwctype>

namespace korva::editor::lisp {

bool isListValue(const LispValue& value) {
    return value.type == LispValue::Type::Nil || value.type == LispValue::Type::List ||
           value.type == LispValue::Type::Point;
}

std::vector<LispValue> itemsOf(const LispValue& value) {
    if (value.type == LispValue::Type::List) return value.items;
    if (value.type != LispValue::Type::Point) return {};
    std::vector<LispValue> items{LispValue::ofReal(value.point.x), LispValue::ofReal(value.point.y)};
    if (!value.point2d) items.push_back(LispValue::ofReal(value.point.z));
    return items;
}

bool isNumberList(const LispValue& value) {
    if (value.type != LispValue::Type::List || value.items.size() < 2 || value.items.size() > 3) return false;
    for (const LispValue& item : value.items) {
        if (!item.isNumber()) return false;
    }
    return true;
}

std::optional<KcGePoint3d> pointOf(const LispValue& value, bool* twoD) {
    if (value.type == LispValue::Type::Point) {
        if (twoD) *twoD = value.point2d;
        return value.point;
    }
    if (!isNumberList(value)) return std::nullopt;
    const auto& items = value.items;
    if (twoD) *twoD = items.size() == 2;
    return KcGePoint3d(items[0].number(), items[1].number(), items.size() == 3 ? items[2].number() : 0.0);
}

bool equalValues(const LispValue& a, const LispValue& b) {
    using Type = LispValue::Type;
    if (a.isNumber() && b.isNumber()) return a.number() == b.number();
    if (isListValue(a) && isListValue(b) && (a.type == Type::Point || b.type == Type::Point)) {
        const std::vector<LispValue> left = itemsOf(a), right = itemsOf(b);
        if (left.size() != right.size()) return false;
        for (size_t i = 0; i < left.size(); ++i) {
            if (!equalValues(left[i], right[i])) return false;
        }
        return true;
    }
    if (a.type != b.type) return false;
    switch (a.type) {
        case Type::String:
        case Type::Symbol: return a.text == b.text;
        case Type::EntityName:
        case Type::SelectionSet: return a.name[0] == b.name[0] && a.name[1] == b.name[1];
        case Type::List:
        case Type::DottedPair:
            if (a.items.size() != b.items.size()) return false;
            for (size_t i = 0; i < a.items.size(); ++i) {
                if (!equalValues(a.items[i], b.items[i])) return false;
            }
            return true;
        default: return true;  // nil, T
    }
}

std::wstring upperName(std::wstring_view name) {
    std::wstring upper(name);
    for (wchar_t& c : upper) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return upper;
}

}  // namespace korva::editor::lisp
