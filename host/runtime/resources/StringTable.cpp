// Parsing the line-based string table of a resource library.
#include "runtime/resources/StringTable.h"

#include <charconv>

#include "db/Utf8.h"

namespace korva::runtime {

namespace {

std::string unescape(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        switch (text[i + 1]) {
            case 'n': out += '\n'; ++i; break;
            case 't': out += '\t'; ++i; break;
            case '\\': out += '\\'; ++i; break;
            default: out += '\\'; break;  // not an escape: the backslash is text
        }
    }
    return out;
}

std::optional<uint32_t> parseId(std::string_view digits) {
    uint32_t id = 0;
    if (digits.empty()) return std::nullopt;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), id);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return id;
}

}  // namespace

StringTable StringTable::parse(std::string_view bytes, std::vector<StringTableProblem>& problems) {
    StringTable table;
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);  // a byte-order mark some editors write
    size_t lineNumber = 0;
    while (!bytes.empty()) {
        const size_t end = bytes.find('\n');
        std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
        ++lineNumber;
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || line.front() == '#') continue;
        const size_t tab = line.find('\t');
        const auto id = tab == std::string_view::npos ? std::nullopt : parseId(line.substr(0, tab));
        if (!id) {
            problems.push_back({lineNumber, "not \"id<TAB>text\" with a decimal id"});
            continue;
        }
        if (table.strings_.count(*id)) {
            problems.push_back({lineNumber, "the id " + std::to_string(*id) + " was given before"});
            continue;
        }
        table.strings_.emplace(*id, db::utf8ToWide(unescape(line.substr(tab + 1))));
    }
    return table;
}

std::optional<std::wstring_view> StringTable::find(uint32_t id) const {
    auto it = strings_.find(id);
    if (it == strings_.end()) return std::nullopt;
    return std::wstring_view(it->second);
}

}  // namespace korva::runtime
