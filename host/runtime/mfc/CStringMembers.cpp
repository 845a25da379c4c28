// The members of CString that are not inline: comparison without case, replace,
// case changes, trimming and printf-style formatting. Case follows the C
// library's wide-character functions, as the string class's model does; "%s" in
// a format takes a wide string (db/WideFormat.h).
#include <cstdarg>
#include <cwctype>

#include "db/WideFormat.h"
#include "kcmfc.h"

namespace {

// The characters its model trims: space and the control characters \t \n \v \f \r.
bool isTrimmedSpace(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

wint_t lowerForComparison(wchar_t c) { return std::towlower(static_cast<wint_t>(c)); }

}  // namespace

int CString::CompareNoCase(const wchar_t* other) const {
    const wchar_t* a = m_text.c_str();
    const wchar_t* b = other ? other : L"";
    for (;; ++a, ++b) {
        const wint_t x = lowerForComparison(*a), y = lowerForComparison(*b);
        if (x != y) return x < y ? -1 : 1;
        if (x == 0) return 0;
    }
}

int CString::Replace(const wchar_t* from, const wchar_t* to) {
    if (!from || !*from) return 0;
    const std::wstring_view pattern(from);
    const std::wstring_view replacement(to ? to : L"");
    std::wstring out;
    int count = 0;
    size_t start = 0;
    for (size_t found = m_text.find(pattern); found != std::wstring::npos; found = m_text.find(pattern, start)) {
        out.append(m_text, start, found - start);
        out.append(replacement);
        start = found + pattern.size();
        ++count;
    }
    if (count == 0) return 0;
    out.append(m_text, start, std::wstring::npos);
    m_text = std::move(out);
    return count;
}

CString& CString::MakeUpper() {
    for (wchar_t& c : m_text) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return *this;
}

CString& CString::MakeLower() {
    for (wchar_t& c : m_text) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    return *this;
}

CString& CString::Trim() {
    TrimRight();
    return TrimLeft();
}

CString& CString::TrimLeft() {
    size_t first = 0;
    while (first < m_text.size() && isTrimmedSpace(m_text[first])) ++first;
    m_text.erase(0, first);
    return *this;
}

CString& CString::TrimRight() {
    size_t end = m_text.size();
    while (end > 0 && isTrimmedSpace(m_text[end - 1])) --end;
    m_text.resize(end);
    return *this;
}

void CString::Format(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CString::FormatV(const wchar_t* format, va_list args) {
    // Its model leaves the string alone when the format is unusable.
    if (auto text = korva::db::formatWideV(format, args)) m_text = std::move(*text);
}
