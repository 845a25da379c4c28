// MVIEW: rectangular viewports of a layout.
#pragma once

namespace korva::commands {

void registerViewportCommand();

}  // namespace korva::commands
