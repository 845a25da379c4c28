// Wide printf formatting with wide "%s" arguments (see WideFormat.h).
#include "db/WideFormat.h"

#include <cwchar>
#include <vector>

namespace korva::db {

std::wstring posixWideFormat(const wchar_t* format) {
    std::wstring out;
    if (!format) return out;
    for (const wchar_t* p = format; *p; ++p) {
        out.push_back(*p);
        if (*p != L'%') continue;
        ++p;
        if (*p == L'%') {
            out.push_back(L'%');
            continue;
        }
        while (*p && std::wcschr(L"-+ #0123456789.*", *p)) out.push_back(*p++);
        bool hasLength = false;
        while (*p && std::wcschr(L"hlLqjzt", *p)) {
            hasLength = true;
            out.push_back(*p++);
        }
        if (!*p) break;
        if ((*p == L's' || *p == L'c') && !hasLength) out.push_back(L'l');
        out.push_back(*p);
    }
    return out;
}

std::optional<std::wstring> formatWideV(const wchar_t* format, va_list args) {
    if (!format) return std::nullopt;
    const std::wstring posix = posixWideFormat(format);
    // vswprintf reports only failure when the buffer is short, so grow until it fits.
    std::vector<wchar_t> buffer(512);
    while (true) {
        va_list attempt;
        va_copy(attempt, args);
        const int written = std::vswprintf(buffer.data(), buffer.size(), posix.c_str(), attempt);
        va_end(attempt);
        if (written >= 0 && static_cast<size_t>(written) < buffer.size()) {
            return std::wstring(buffer.data(), static_cast<size_t>(written));
        }
        if (buffer.size() > (1u << 24)) return std::nullopt;
        buffer.resize(buffer.size() * 4);
    }
}

}  // namespace korva::db
