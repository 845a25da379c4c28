// Locale folders from the environment (read at every call, so that a change
// of LANG takes effect at once) and the candidate paths of a resource library.
#include "runtime/resources/ResourceSearch.h"

#include <cstdlib>
#include <filesystem>

#include "runtime/modules/ModuleSearch.h"

namespace korva::runtime {

namespace fs = std::filesystem;

std::string userLocale() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const char* value = std::getenv(variable); value && *value) return value;
    }
    return {};
}

std::vector<std::string> localeFolders(std::string_view locale) {
    // language[_territory][.codeset][@modifier]
    locale = locale.substr(0, locale.find_first_of(".@"));
    if (locale.empty() || locale == "C" || locale == "POSIX") return {};
    std::vector<std::string> folders{std::string(locale)};
    if (const size_t underscore = locale.find('_'); underscore != std::string_view::npos && underscore > 0) {
        folders.emplace_back(locale.substr(0, underscore));
    }
    return folders;
}

std::vector<std::string> resourceCandidates(std::string_view name, const std::string& callerFolder) {
    std::string fileName(name);
    for (char& c : fileName) {
        if (c == '\\') c = '/';
    }
    std::vector<std::string> bases;
    if (fs::path(fileName).has_parent_path()) {
        // A name with a folder: that folder is the one base.
        const fs::path given(fileName);
        bases.push_back(given.parent_path().string());
        fileName = given.filename().string();
    } else {
        bases.push_back(callerFolder);
        if (programFolder() != callerFolder) bases.push_back(programFolder());
    }
    const std::vector<std::string> locales = localeFolders(userLocale());
    std::vector<std::string> candidates;
    for (const std::string& base : bases) {
        if (base.empty()) continue;
        for (const std::string& locale : locales) candidates.push_back((fs::path(base) / locale / fileName).string());
        candidates.push_back((fs::path(base) / fileName).string());
    }
    return candidates;
}

}  // namespace korva::runtime
