// The text form of the registry store: the profile file. UTF-8, one "[path]"
// section per key (the path starts with HKEY_CURRENT_USER), one value per line:
//   "Name"="text"              REG_SZ, with \\ \" \n \r \t and \u{hex} escapes
//   "Name"=dword:0000002a      REG_DWORD of 4 bytes
//   "Name"=hex(3):01,02,ff     any other type, or data of an unusual size, as bytes
//   @=...                      the key's default (unnamed) value
// Lines starting with ";" or "#" are comments.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runtime/profile/RegistryTree.h"

namespace korva::runtime {

struct RegistryTextProblem {
    int line = 0;
    std::string message;
};

std::string writeRegistryText(const RegistryTree& tree);

// Reads what can be read: a damaged line is reported and skipped (a damaged
// section header skips its values too), the rest is kept.
RegistryTree readRegistryText(std::string_view text, std::vector<RegistryTextProblem>& problems);

}  // namespace korva::runtime
