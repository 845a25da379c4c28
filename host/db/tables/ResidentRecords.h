// Making a new record part of a drawing beyond what ObjectAccess::adopt does:
// tying it to its owner (the owner pointer and the 330 group) and giving it
// the tag layout of the drawing's format, since files before R13 carry no
// subclass markers, owners, application groups or lineweights.
#pragma once

#include "db/ObjectRecord.h"

namespace korva::db {

// Sets the owner pointer and writes the owner's handle (0 for none) as group 330.
void linkToOwner(ObjectRecord& record, ObjectRecord* owner);

// In a drawing of a format before R13, drops the groups that format lacks.
void fitTagsToFormat(ObjectRecord& record);

}  // namespace korva::db
