// ORTHO, REDRAW and REGEN: drawing aids and screen refreshes.
#pragma once

namespace korva::commands {

void registerDisplayCommands();

}  // namespace korva::commands
