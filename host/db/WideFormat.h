// Wide printf formatting with the convention of the host API: in a module's
// format "%s" and "%c" take wide arguments, while the C library reads them as
// narrow. The command line's printing and the CString class share this helper.
#pragma once

#include <cstdarg>
#include <optional>
#include <string>

namespace korva::db {

// The format rewritten for the C library: "%s" becomes "%ls" and "%c" becomes
// "%lc" unless a length modifier is already given.
std::wstring posixWideFormat(const wchar_t* format);

// Formats the arguments with a format of the host API convention; nothing when
// the format is null or the C library rejects it.
std::optional<std::wstring> formatWideV(const wchar_t* format, va_list args);

}  // namespace korva::db
