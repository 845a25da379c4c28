// The host's own commands (-LAYER, UCS, LINE, SAVEAS, ...), registered in the
// command stack as built-in commands.
#pragma once

namespace korva::commands {

void registerHostCommands();

}  // namespace korva::commands
