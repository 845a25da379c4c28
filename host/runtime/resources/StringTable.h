// The string table of a resource library. On this host a resource library
// (named "*.dll" by convention, e.g. "KvExtendRes.dll") is a UTF-8 text file
// with one string per line:
//
//     # a comment
//     6000<TAB>DIMEX
//     6650<TAB>First line\nsecond line, with a \\ and a \t tab
//
// Empty lines and lines starting with "#" are ignored. The text knows the
// escapes "\n", "\t" and "\\"; any other backslash stays as it is (MText
// codes such as "\P" pass through). A line that is not "id<TAB>text", or that
// repeats an id, is reported and skipped (the first string of an id stays).
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korva::runtime {

struct StringTableProblem {
    size_t line = 0;  // 1-based
    std::string reason;
};

class StringTable {
public:
    // Reads the table from the file's bytes; problems are collected, not fatal.
    static StringTable parse(std::string_view bytes, std::vector<StringTableProblem>& problems);

    std::optional<std::wstring_view> find(uint32_t id) const;
    size_t size() const { return strings_.size(); }

private:
    std::map<uint32_t, std::wstring> strings_;
};

}  // namespace korva::runtime
