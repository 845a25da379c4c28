// The command line at a terminal: lines typed with editing and history.
#pragma once

#include <memory>

#include "editor/InputSource.h"

namespace korva::console {

std::unique_ptr<editor::InputSource> terminalInput();

}  // namespace korva::console
