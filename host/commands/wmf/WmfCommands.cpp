// Registration of WMFOUT and WMFIN.
#include "commands/wmf/WmfCommands.h"

namespace korva::commands {

void registerWmfCommands() {
    wmf::registerWmfOutCommand();
    wmf::registerWmfInCommand();
}

}  // namespace korva::commands
