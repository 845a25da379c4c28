// Caret notation between stored texts and the API's wide strings.
#include "db/ApiText.h"

#include "db/Utf8.h"

namespace korva::db {

std::wstring toApiText(std::string_view stored) {
    if (stored.find('^') == std::string_view::npos) return utf8ToWide(stored);
    std::wstring wide = utf8ToWide(stored);
    std::wstring out;
    out.reserve(wide.size());
    for (size_t i = 0; i < wide.size(); ++i) {
        if (wide[i] == L'^' && i + 1 < wide.size()) {
            const wchar_t next = wide[i + 1];
            if (next == L' ') {  // "^ " is the caret itself
                out.push_back(L'^');
                ++i;
                continue;
            }
            if (next >= L'@' && next <= L'_') {
                out.push_back(static_cast<wchar_t>(next - 64));
                ++i;
                continue;
            }
        }
        out.push_back(wide[i]);
    }
    return out;
}

std::string toStoredText(std::wstring_view text) {
    std::wstring escaped;
    escaped.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (c < 0x20 && c != L'\t') {
            escaped.push_back(L'^');
            escaped.push_back(static_cast<wchar_t>(c + 64));
        } else if (c == L'^' && i + 1 < text.size() &&
                   (text[i + 1] == L' ' || (text[i + 1] >= L'@' && text[i + 1] <= L'_'))) {
            escaped += L"^ ";  // a caret that would read as an escape
        } else {
            escaped.push_back(c);
        }
    }
    return wideToUtf8(escaped);
}

std::string toStoredText(const wchar_t* text) { return text ? toStoredText(std::wstring_view(text)) : std::string(); }

}  // namespace korva::db
