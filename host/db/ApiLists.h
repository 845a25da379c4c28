// The working database and list conversions shared by the C-level functions.
#pragma once

#include <vector>

#include "db/Drawing.h"
#include "db/Tag.h"
#include "kcadstd.h"

namespace korva::db {

// The drawing of the host's working database, or nullptr.
Drawing* workingDrawing();
// A list as a result-buffer chain (references become entity names in the drawing).
resbuf* toChain(const std::vector<Tag>& list, const Drawing* drawing);
// A chain as tags; false when an item cannot be stored (an unknown name, a missing text).
bool fromChain(const resbuf* list, const Drawing* drawing, std::vector<Tag>& out);
// The first item of a list with this group code, or nullptr.
const Tag* findItem(const std::vector<Tag>& list, int code);

}  // namespace korva::db
