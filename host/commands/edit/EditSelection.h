// The objects an editing command works on: the "Select objects:" selection
// (or the pick-first set) through kcedSSGet, without the objects on locked
// layers, which editing commands leave alone and count as real hosts do
// ("1 was on a locked layer.").
#pragma once

#include <vector>

#include "kcdb.h"

namespace korva::commands {

// The selected, editable objects in selection order. RTNORM with at least one
// object, RTNONE when nothing (editable) was selected, RTCAN on cancel.
int selectObjectsToEdit(std::vector<KcDbObjectId>& ids);

// The same selection for commands that only read the objects: those on locked
// layers are kept.
int selectObjectsToRead(std::vector<KcDbObjectId>& ids);

}  // namespace korva::commands
