// The UCS that the UCS command's Entity/OBject option derives from an entity:
// for a text, an attribute or a block reference the origin is its insertion
// point, the X axis follows its rotation and Z is its extrusion; a line gives
// its start point and its direction; a planar face its first three corners;
// every other entity its object coordinate system at its first point.
#pragma once

#include <optional>

#include "db/ObjectRecord.h"
#include "editor/Coordinates.h"

namespace korva::commands {

std::optional<editor::UcsFrame> ucsOfEntity(const db::ObjectRecord& entity);

}  // namespace korva::commands
