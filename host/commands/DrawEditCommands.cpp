// Registration of the drawing, block and editing commands.
#include "commands/DrawEditCommands.h"

namespace korva::commands {

void registerDrawEditCommands() {
    registerLineCommand();
    registerCircleCommand();
    registerArcCommand();
    registerPlineCommand();
    registerPointCommand();
    registerTextCommand();
    registerAttdefCommand();
    registerBlockCommand();
    registerInsertCommand();
    registerEraseCommand();
    registerMoveCopyCommands();
    registerRotateScaleCommands();
    registerMirrorCommand();
    registerExplodeCommand();
    registerWipeoutCommand();
}

}  // namespace korva::commands
