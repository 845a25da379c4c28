// Paths between the host API and this system. API paths are wide strings whose
// folders may be separated by "\" or "/" (modules join paths with "\"); system
// paths are UTF-8 with "/". Every file function of the host converts through here.
#pragma once

#include <string>
#include <string_view>

namespace korva::runtime {

// UTF-8, every "\" turned into "/"; a null path is empty.
std::string nativePath(std::wstring_view apiPath);
std::string nativePath(const wchar_t* apiPath);
// A system path as the host API hands it out (UTF-8 decoded, "/" kept).
std::wstring apiPath(std::string_view nativePath);

}  // namespace korva::runtime
