// Resource libraries: loaded string tables, each a host module (its handle is
// an HINSTANCE) found by file name like any module. Loading the same file
// again gives the same library with one more reference; FreeLibrary drops one.
// Malformed lines are reported on the command line once per file and line.
#pragma once

#include <string>

#include "runtime/modules/HostModule.h"
#include "runtime/resources/StringTable.h"

namespace korva::runtime {

class ResourceLibrary final : public HostModule {
public:
    ResourceLibrary(std::string path, StringTable strings)
        : HostModule(ModuleKind::ResourceLibrary, std::move(path)), strings_(std::move(strings)) {}

    const StringTable& strings() const { return strings_; }
    int references = 1;

private:
    StringTable strings_;
};

// Loads the library at `path` (or adds a reference to it); null when the file cannot be read.
ResourceLibrary* loadResourceLibrary(const std::string& path);
// Drops one reference; the library goes with the last. False for a handle that is not a loaded library.
bool releaseResourceLibrary(HMODULE handle);

}  // namespace korva::runtime
