// Case folding for names. Symbol names, keys and header variables are compared
// without regard to case; names are UTF-8, and folding covers ASCII and the
// Latin-1, Greek and Cyrillic letters that appear in real drawings.
#pragma once

#include <string>
#include <string_view>

namespace korva::db {

std::string asciiUpper(std::string_view text);
// Upper-case fold of a UTF-8 name for comparisons and look-ups.
std::string foldName(std::string_view utf8);
bool namesEqual(std::string_view a, std::string_view b);

}  // namespace korva::db
