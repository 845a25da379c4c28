// -LAYER: the command-line layer command (states, properties, current layer).
#pragma once

namespace korva::commands {

void registerLayerCommand();

}  // namespace korva::commands
