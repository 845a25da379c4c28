// Module folders from the running program's path and from dladdr, and the
// search of a module file name along them.
#include "runtime/modules/ModuleSearch.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

namespace korva::runtime {

namespace fs = std::filesystem;

namespace {

bool hasFolder(const std::string& name) { return name.find_first_of("/\\") != std::string::npos; }

std::string withSlashes(std::string path) {
    for (char& c : path) {
        if (c == '\\') c = '/';
    }
    return path;
}

}  // namespace

const std::string& programPath() {
    static const std::string path = [] {
        std::error_code error;
        const fs::path exe = fs::read_symlink("/proc/self/exe", error);
        return error ? std::string() : exe.string();
    }();
    return path;
}

const std::string& programFolder() {
    static const std::string folder = fs::path(programPath()).parent_path().string();
    return folder;
}

std::string defaultModuleFolder() { return (fs::path(programFolder()) / ".." / "lib" / "korva").lexically_normal().string(); }

std::string folderOfAddress(const void* address) {
    Dl_info info{};
    if (!address || ::dladdr(address, &info) == 0 || !info.dli_fname || !hasFolder(info.dli_fname)) return programFolder();
    std::error_code error;
    const fs::path file = fs::weakly_canonical(info.dli_fname, error);
    return (error ? fs::path(info.dli_fname) : file).parent_path().string();
}

std::string findModuleFile(const std::string& name, const std::string& callerFolder, std::string& error) {
    std::error_code ignored;
    if (name.empty()) {
        error = "no module name given";
        return {};
    }
    if (hasFolder(name)) {
        const std::string path = withSlashes(name);
        if (fs::is_regular_file(path, ignored)) return fs::absolute(path, ignored).lexically_normal().string();
        error = "cannot find the module \"" + path + "\"";
        return {};
    }
    const std::vector<std::string> folders{programFolder(), callerFolder, defaultModuleFolder()};
    std::string searched;
    for (const std::string& folder : folders) {
        if (folder.empty()) continue;
        const fs::path candidate = fs::path(folder) / name;
        if (fs::is_regular_file(candidate, ignored)) return candidate.lexically_normal().string();
        searched += (searched.empty() ? "" : ", ") + folder;
    }
    error = "cannot find the module \"" + name + "\" (searched " + searched + ")";
    return {};
}

}  // namespace korva::runtime
