#include "commands/NamePatterns.h"

#include "db/ApiText.h"

namespace korva::commands {

std::vector<std::wstring> splitNameList(std::wstring_view list) {
    std::vector<std::wstring> parts;
    std::wstring part;
    auto finish = [&] {
        if (!part.empty()) parts.push_back(part);
        part.clear();
    };
    for (size_t i = 0; i < list.size(); ++i) {
        if (list[i] == L'`' && i + 1 < list.size()) {
            part.push_back(list[i]);
            part.push_back(list[++i]);
        } else if (list[i] == L',') {
            finish();
        } else {
            part.push_back(list[i]);
        }
    }
    finish();
    return parts;
}

NamePatterns::NamePatterns(std::wstring_view list) : texts_(splitNameList(list)) {
    for (const std::wstring& text : texts_) patterns_.emplace_back(text, true);
}

bool NamePatterns::matches(std::wstring_view name) const {
    for (const editor::WildcardPattern& pattern : patterns_) {
        if (pattern.matches(name)) return true;
    }
    return false;
}

NamePatterns::TableMatch NamePatterns::matchRecords(const db::SymbolTable* table) const {
    TableMatch result;
    std::vector<bool> used(patterns_.size(), false);
    if (table) {
        for (db::ObjectRecord* record : table->records) {
            if (record->erased) continue;
            const std::wstring name = db::toApiText(db::recordName(*record));
            bool named = false;
            for (size_t i = 0; i < patterns_.size(); ++i) {
                if (!patterns_[i].matches(name)) continue;
                used[i] = true;
                named = true;
            }
            if (named) result.records.push_back(record);
        }
    }
    for (size_t i = 0; i < patterns_.size(); ++i) {
        if (!used[i]) result.unmatched.push_back(texts_[i]);
    }
    return result;
}

}  // namespace korva::commands
