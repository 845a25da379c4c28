// Registration of the host's own commands in the command stack.
#include "commands/HostCommands.h"

#include "commands/view/DisplayCommands.h"
#include "commands/DrawEditCommands.h"
#include "commands/files/FileCommands.h"
#include "commands/layers/LayerCommand.h"
#include "commands/view/LayoutCommand.h"
#include "commands/view/UcsCommand.h"
#include "commands/view/ViewportCommand.h"
#include "commands/wmf/WmfCommands.h"
#include "commands/files/XrefCommand.h"
#include "commands/view/ZoomCommand.h"

namespace korva::commands {

void registerHostCommands() {
    registerLayerCommand();
    registerUcsCommand();
    registerDisplayCommands();
    registerZoomCommand();
    registerLayoutCommands();
    registerViewportCommand();
    registerXrefCommand();
    registerFileCommands();
    registerDrawEditCommands();
    registerWmfCommands();
}

}  // namespace korva::commands
