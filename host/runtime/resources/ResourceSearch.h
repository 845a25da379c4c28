// Where resource libraries are looked for: beside the module that asks, the
// copy in a folder named after the user's locale first, then the same in the
// host program's folder.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korva::runtime {

// Where loadResourceDll looks for `name`, in order: for each base folder (the
// caller's, then the program's), <base>/<locale>/name, <base>/<language>/name,
// <base>/name. The locale comes from LC_ALL, LC_MESSAGES or LANG as they are now.
std::vector<std::string> resourceCandidates(std::string_view name, const std::string& callerFolder);
// "de_DE.UTF-8@euro" gives {"de_DE", "de"}; "C", "POSIX" and empty give none.
std::vector<std::string> localeFolders(std::string_view locale);
// The first of LC_ALL, LC_MESSAGES and LANG that is set and not empty.
std::string userLocale();

}  // namespace korva::runtime
