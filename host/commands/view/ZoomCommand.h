// ZOOM: changes the view of the current viewport.
#pragma once

namespace korva::commands {

void registerZoomCommand();

}  // namespace korva::commands
