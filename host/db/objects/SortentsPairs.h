// The pairs of a SORTENTSTABLE object: which entity (331) is drawn in the
// place of which sort handle (5). Read by the table's class and by pictures.
#pragma once

#include <unordered_map>

#include "db/ObjectRecord.h"

namespace korva::db {

// Entity handle -> sort handle, from the table's own subclass only.
std::unordered_map<Handle, Handle> sortentsPairs(const ObjectRecord& table);

}  // namespace korva::db
