// Printing LISP values as the command line shows them.
#include "editor/LispValue.h"

#include <cwchar>

namespace korva::editor {

namespace {

std::wstring realText(double value) {
    wchar_t buffer[64];
    std::swprintf(buffer, 64, L"%.6g", value);
    std::wstring text(buffer);
    if (text.find_first_of(L".en") == std::wstring::npos) text += L".0";
    return text;
}

std::wstring nameText(const wchar_t* kind, const int64_t name[2]) {
    wchar_t buffer[64];
    std::swprintf(buffer, 64, L"<%ls: %llx>", kind, static_cast<unsigned long long>(name[1]));
    return buffer;
}

}  // namespace

std::wstring LispValue::print() const {
    switch (type) {
        case Type::Nil: return L"nil";
        case Type::True: return L"T";
        case Type::Integer: return std::to_wstring(integer);
        case Type::Real: return realText(real);
        case Type::String: {
            std::wstring out = L"\"";
            for (wchar_t c : text) {
                if (c == L'"' || c == L'\\') out.push_back(L'\\');
                out.push_back(c);
            }
            return out + L"\"";
        }
        case Type::Symbol: return text;
        case Type::Point:
            return L"(" + realText(point.x) + L" " + realText(point.y) + (point2d ? L"" : L" " + realText(point.z)) + L")";
        case Type::EntityName: return nameText(L"Entity name", name);
        case Type::SelectionSet: return nameText(L"Selection set", name);
        case Type::List: {
            std::wstring out = L"(";
            for (size_t i = 0; i < items.size(); ++i) out += (i ? L" " : L"") + items[i].print();
            return out + L")";
        }
        case Type::DottedPair:
            return L"(" + (items.size() > 0 ? items[0].print() : L"nil") + L" . " +
                   (items.size() > 1 ? items[1].print() : L"nil") + L")";
    }
    return L"nil";
}

}  // namespace korva::editor
