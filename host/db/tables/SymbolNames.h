// The rules for names of symbol table records, and the names the host makes
// up itself: unique anonymous block names ("*U12") and the recognition of the
// layout blocks ("*Model_Space", "*Paper_Space...").
#pragma once

#include <string>
#include <string_view>

#include "db/SymbolTable.h"

namespace korva::db {

// A valid record name has 1 to 255 characters, no control character, none of
// < > / \ " : ; ? * = , ` and no leading or trailing space; "|" (xref-dependent
// names) is allowed. Block names may also start with one "*" (anonymous and
// layout blocks).
bool isValidSymbolName(std::wstring_view name, bool blockName);

// Whether a block name asks for a fresh anonymous name: "*" and one letter.
bool isAnonymousNameRequest(std::string_view name);

// "*" + letter + the next number of that letter not used in the table (erased
// records included, so that an unerase cannot create a duplicate).
std::string nextAnonymousName(const SymbolTable& blocks, char letter);

bool isModelSpaceName(std::string_view name);
bool isPaperSpaceName(std::string_view name);

}  // namespace korva::db
