// Justified single-line text: for every justification but left/baseline the
// alignment point (group 11) is the master, and the insertion point (group 10)
// follows from it, the justification, the rotation and the text box.
#pragma once

#include "db/ObjectRecord.h"
#include "db/TextMetrics.h"

namespace korva::db {

// Whether a TEXT, ATTRIB or ATTDEF record is justified other than left/baseline.
bool isJustifiedText(const ObjectRecord& text);

// Recomputes group 10 of a justified text from group 11; leaves other texts alone.
void alignTextPosition(ObjectRecord& text);

// The rotation of an MTEXT: the angle of its direction (11) in the plane of its
// normal, in [0, 2 pi).
double mtextRotation(const ObjectRecord& mtext);

}  // namespace korva::db
