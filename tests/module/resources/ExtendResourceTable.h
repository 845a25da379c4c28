// The module's English resource library as the host reads it: the file that
// lands beside the built module, parsed once by the host's own string-table
// reader, with the problems that reader reported. The tests of this folder
// look texts up here by id.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "ModuleSession.h"
#include "runtime/resources/StringTable.h"

namespace korva::test {

struct ExtendResourceTable {
    std::filesystem::path path;
    bool read = false;
    runtime::StringTable strings;
    std::vector<runtime::StringTableProblem> problems;
};

inline const ExtendResourceTable& extendResources() {
    static const ExtendResourceTable table = [] {
        ExtendResourceTable loaded;
        loaded.path = extendModulePath().parent_path() / "KvExtendRes.dll";
        std::ifstream in(loaded.path, std::ios::binary);
        if (!in) return loaded;
        std::ostringstream bytes;
        bytes << in.rdbuf();
        loaded.read = true;
        loaded.strings = runtime::StringTable::parse(bytes.str(), loaded.problems);
        return loaded;
    }();
    return table;
}

// The text of an id; a missing id fails the calling test and gives an empty text.
inline std::wstring extendText(uint32_t id) {
    const auto found = extendResources().strings.find(id);
    if (!found) {
        ADD_FAILURE() << "the resource library has no text for id " << id;
        return {};
    }
    return std::wstring(*found);
}

}  // namespace korva::test
