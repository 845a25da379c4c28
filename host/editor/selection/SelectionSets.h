// Selection sets of the editor: named sets (kcedSSGet, kcedSSAdd, ...) with
// their members in order, released when the caller frees them or, for sets a
// command leaves behind, when the command ends.
#pragma once

#include <vector>

#include "db/ObjectRecord.h"
#include "kcadstd.h"

namespace korva::editor {

// Releases the selection sets a command left behind (installed as a command-end hook).
void installSelectionCleanup();

}  // namespace korva::editor
