// Which layer LAYOFF turns off for one pick, by the block-selection nesting
// mode: the picked object's own layer (Entity), the layer of the block
// reference that directly holds it (Block), or the layer of the object picked
// at the top level (None). Inside an external reference a layer name without
// "|" gets the xref block's name and "|" in front, except names beginning with
// the digit zero.
#pragma once

#include <cstddef>

#include "kcadstd.h"

namespace KvLayers {

enum LayOffNesting { kNestingEntity = 1, kNestingBlock = 2, kNestingNone = 3 };

// The layer to turn off for a pick of entity inside containers (a nested pick's
// container list, innermost reference first; null when not nested). 1 with the
// layer, or 0 when a layer needed cannot be read.
int ChooseLayOffLayer(int nesting, const kcad_name entity, const resbuf* containers, wchar_t* layer, size_t size);

}  // namespace KvLayers
