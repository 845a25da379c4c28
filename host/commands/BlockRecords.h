// Block records for the commands that make blocks (-BLOCK, -INSERT of a
// drawing, -XREF, WMFIN): adding a new record to the block table, and emptying
// an existing one before it is defined again.
#pragma once

#include <string>

#include "kcdbdatabase.h"
#include "kcdbtables.h"

namespace korva::commands {

// Adds a block record with this name and base point; null when the table
// refuses it. A name "*U" gets the next free anonymous name.
KcDbObjectId addBlockRecord(KcDbDatabase& database, const std::wstring& name, const KcGePoint3d& origin);

// Erases every entity of the block and sets its base point; false when the
// block cannot be opened for write.
bool emptyBlockRecord(KcDbObjectId block, const KcGePoint3d& origin);

}  // namespace korva::commands
