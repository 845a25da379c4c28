// Ownership of non-graphical objects: the owner pointer, the owner's handle
// in group 330, and the owner among the object's persistent reactors (as DXF
// writers give every dictionary entry).
#pragma once

#include "db/ObjectRecord.h"

namespace korva::db {

void attachToOwner(ObjectRecord& object, ObjectRecord& owner);
// Leaves the object without owner when the given record owns it.
void detachFromOwner(ObjectRecord& object, const ObjectRecord& formerOwner);

}  // namespace korva::db
