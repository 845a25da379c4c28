// The pick-first (implied) selection of the current document: set by
// kcedSSSetFirst, read by kcedSSGetFirst, the "I" mode and commands flagged to
// use it. No pick-first set exists while PICKFIRST is 0. A command that takes
// the set without the redraw flag leaves it cleared when it ends.
#pragma once

#include <vector>

#include "db/ObjectRecord.h"

namespace korva::editor {

// The live (not erased) entities of the pick-first set; empty when there is none.
std::vector<db::ObjectRecord*> pickFirstEntities();
void setPickFirst(const std::vector<db::ObjectRecord*>& entities);
void clearPickFirst();

// A selection took the pick-first set for the running command.
void notePickFirstTaken();
// The command-end hook: clears a set the command took.
void finishPickFirstUse();

}  // namespace korva::editor
