// UCS: sets, saves, restores and deletes user coordinate systems.
#pragma once

namespace korva::commands {

void registerUcsCommand();

}  // namespace korva::commands
