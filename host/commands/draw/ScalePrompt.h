// The scale prompts of the commands that place a block (-INSERT, WMFIN):
// "Enter X scale factor, specify opposite corner, or [Corner/XYZ]" and then the
// Y scale, or with XYZ each axis in turn.
#pragma once

#include <optional>
#include <string>

#include "kcadstd.h"
#include "kcge.h"

namespace korva::commands {

// A non-zero scale factor or Enter for the value given; RTNORM, RTNONE, or the ending status.
int promptScaleFactor(const std::wstring& prompt, double& factor);

// The scale of a block placed at insertion (UCS); nothing when the command ends
// or the answer is refused (a corner on the insertion point's row or column).
std::optional<KcGeScale3d> promptPlacementScale(const kcad_point insertion);

}  // namespace korva::commands
