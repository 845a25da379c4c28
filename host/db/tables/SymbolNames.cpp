// Name rules of symbol table records.
#include "db/tables/SymbolNames.h"

#include <charconv>

#include "db/TextCase.h"

namespace korva::db {

namespace {

constexpr std::wstring_view kForbidden = L"<>/\\\":;?*=,`";

bool startsWithFolded(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && namesEqual(text.substr(0, prefix.size()), prefix);
}

}  // namespace

bool isValidSymbolName(std::wstring_view name, bool blockName) {
    if (blockName && !name.empty() && name.front() == L'*') name.remove_prefix(1);
    if (name.empty() || name.size() > 255) return false;
    if (name.front() == L' ' || name.back() == L' ') return false;
    for (wchar_t c : name) {
        if (c < 0x20 || c == 0x7F) return false;
        if (kForbidden.find(c) != std::wstring_view::npos) return false;
    }
    return true;
}

bool isAnonymousNameRequest(std::string_view name) {
    if (name.size() != 2 || name[0] != '*') return false;
    const char letter = name[1];
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

std::string nextAnonymousName(const SymbolTable& blocks, char letter) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    uint64_t highest = 0;
    for (const ObjectRecord* record : blocks.records) {
        const std::string_view name = recordName(*record);
        if (name.size() < 3 || name[0] != '*' || asciiUpper(name.substr(1, 1))[0] != letter) continue;
        uint64_t number = 0;
        const char* first = name.data() + 2;
        const char* last = name.data() + name.size();
        auto [end, error] = std::from_chars(first, last, number);
        if (error == std::errc() && end == last && number > highest) highest = number;
    }
    return std::string("*") + letter + std::to_string(highest + 1);
}

bool isModelSpaceName(std::string_view name) { return namesEqual(name, "*Model_Space"); }

bool isPaperSpaceName(std::string_view name) { return startsWithFolded(name, "*Paper_Space"); }

}  // namespace korva::db
