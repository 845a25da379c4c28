// Path conversion between the host API and this system (see NativePath.h).
#include "runtime/files/NativePath.h"

#include <algorithm>

#include "db/Utf8.h"

namespace korva::runtime {

std::string nativePath(std::wstring_view path) {
    std::string native = db::wideToUtf8(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::string nativePath(const wchar_t* path) { return path ? nativePath(std::wstring_view(path)) : std::string(); }

std::wstring apiPath(std::string_view path) { return db::utf8ToWide(path); }

}  // namespace korva::runtime
