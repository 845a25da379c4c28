// SAVE, SAVEAS and QSAVE: saving the drawing as DXF.
#pragma once

namespace korva::commands {

void registerFileCommands();

}  // namespace korva::commands
