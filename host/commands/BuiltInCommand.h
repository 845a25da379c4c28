// Registration of the host's own commands: each is a built-in command of the
// "KORVA_HOST" group whose global and local names are the same English name.
#pragma once

#include <functional>

#include "kcadstd.h"

namespace korva::commands {

inline constexpr const wchar_t* kHostCommandGroup = L"KORVA_HOST";

void addBuiltInCommand(const wchar_t* name, std::function<void()> handler, int32_t flags = 0);

}  // namespace korva::commands
