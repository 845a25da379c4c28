// Entity names of the C-level API: two 64-bit words that identify a record in
// any open drawing. A name carries the drawing's serial and the record's index,
// so a stale or forged name resolves to nothing rather than to another object.
#pragma once

#include "db/ObjectRecord.h"
#include "kcadstd.h"

namespace korva::db {

void nameOf(const ObjectRecord* record, kcad_name out);
ObjectRecord* recordOf(const kcad_name name);
inline bool isNullName(const kcad_name name) { return name[0] == 0 && name[1] == 0; }

}  // namespace korva::db
