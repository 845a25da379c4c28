// Registration of the host's own commands in the command stack.
#include "commands/HostCommands.h"

namespace korva::commands {

void registerHostCommands() {}

}  // namespace korva::commands
