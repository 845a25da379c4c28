// -LAYOUT, MSPACE and PSPACE: choosing the layout and the space to work in.
#pragma once

namespace korva::commands {

void registerLayoutCommands();

}  // namespace korva::commands
