// The explosion step of BURST for one block reference: texts for the constant
// attribute definitions of its block, the exploded entities appended to model
// space with the reference's layer and colour where they came from layer "0"
// or BYBLOCK, and the reference erased.
#pragma once

#include "kcadstd.h"

// Bursts the reference behind the entity name. An entity that is not a block
// reference, or that cannot be opened, is skipped; a reference whose block is
// not explodable is left alone; a reference whose explosion fails is erased all
// the same (deliberately: it disappears without replacement).
void burstReference(const kcad_name reference);
