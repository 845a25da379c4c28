// Reading printf conversions out of resource texts (see FormatConversions.h).
#include "FormatConversions.h"

#include <cwchar>

namespace korva::test {

namespace {

bool isOneOf(wchar_t c, const wchar_t* set) { return c != L'\0' && std::wcschr(set, c) != nullptr; }

}  // namespace

std::optional<std::string> printfConversions(std::wstring_view text) {
    std::string letters;
    size_t i = 0;
    while (i < text.size()) {
        if (text[i++] != L'%') continue;
        if (i < text.size() && text[i] == L'%') {
            ++i;
            continue;
        }
        while (i < text.size() && isOneOf(text[i], L"-+ #0")) ++i;
        while (i < text.size() && isOneOf(text[i], L"0123456789")) ++i;
        if (i < text.size() && text[i] == L'.') {
            ++i;
            while (i < text.size() && isOneOf(text[i], L"0123456789")) ++i;
        }
        if (i == text.size() || !isOneOf(text[i], L"disfeg")) return std::nullopt;
        letters.push_back(static_cast<char>(text[i++]));
    }
    return letters;
}

}  // namespace korva::test
