// Loading and releasing resource libraries, reference counted per file.
#include "runtime/resources/ResourceLibrary.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

#include "db/Utf8.h"
#include "editor/CommandLine.h"

namespace korva::runtime {

namespace {

std::vector<std::unique_ptr<ResourceLibrary>>& libraries() {
    static std::vector<std::unique_ptr<ResourceLibrary>> loaded;
    return loaded;
}

// Each malformed line is reported once in the life of the process, however
// often its library is loaded again.
void report(const std::string& path, const std::vector<StringTableProblem>& problems) {
    static std::set<std::pair<std::string, size_t>> reported;
    for (const StringTableProblem& problem : problems) {
        if (!reported.insert({path, problem.line}).second) continue;
        editor::CommandLine::instance().print(L"\nResource library " + db::utf8ToWide(path) + L", line " +
                                              std::to_wstring(problem.line) + L": " + db::utf8ToWide(problem.reason) +
                                              L"; the line is skipped.\n");
    }
}

}  // namespace

ResourceLibrary* loadResourceLibrary(const std::string& path) {
    std::error_code error;
    const std::string canonical = std::filesystem::weakly_canonical(path, error).string();
    if (error || !std::filesystem::is_regular_file(canonical, error)) return nullptr;
    for (const auto& library : libraries()) {
        if (library->path() == canonical) {
            ++library->references;
            return library.get();
        }
    }
    std::ifstream in(canonical, std::ios::binary);
    if (!in) return nullptr;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    std::vector<StringTableProblem> problems;
    StringTable strings = StringTable::parse(bytes.str(), problems);
    report(canonical, problems);
    libraries().push_back(std::make_unique<ResourceLibrary>(canonical, std::move(strings)));
    ResourceLibrary& library = *libraries().back();
    ModuleRegistry::instance().add(library);
    return &library;
}

bool releaseResourceLibrary(HMODULE handle) {
    auto& loaded = libraries();
    for (auto it = loaded.begin(); it != loaded.end(); ++it) {
        if ((*it)->handle() != handle) continue;
        if (--(*it)->references == 0) {
            ModuleRegistry::instance().remove(**it);
            loaded.erase(it);
        }
        return true;
    }
    return false;
}

}  // namespace korva::runtime
