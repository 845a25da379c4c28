// Name lists typed at the prompts of table commands: comma-separated wildcard
// patterns ("WALL*,DOOR?", "*" for every name), each matched without regard to
// case. A "`" makes the next character literal, so "A`,B" is one name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/SymbolTable.h"
#include "editor/selection/Wildcard.h"

namespace korva::commands {

class NamePatterns {
public:
    explicit NamePatterns(std::wstring_view list);

    bool empty() const { return patterns_.empty(); }
    bool matches(std::wstring_view name) const;
    const std::vector<std::wstring>& texts() const { return texts_; }

    // The live records of a table that the list names, in table order, and the
    // patterns that named none of them.
    struct TableMatch {
        std::vector<db::ObjectRecord*> records;
        std::vector<std::wstring> unmatched;
    };
    TableMatch matchRecords(const db::SymbolTable* table) const;

private:
    std::vector<std::wstring> texts_;
    std::vector<editor::WildcardPattern> patterns_;
};

// The parts of a comma-separated list; "`," stays inside its part. Empty parts are dropped.
std::vector<std::wstring> splitNameList(std::wstring_view list);

}  // namespace korva::commands
