// One entity pick at a prompt (kcedEntSel, kcedNEntSel, kcedNEntSelP): the
// answer is a point, hit-tested within the pick aperture, or an entity name
// value (taken as picked at its insertion or start point), or a keyword of the
// last kcedInitGet. A miss sets ERRNO 7 and Enter ERRNO 52; both give RTERROR.
#pragma once

#include <string>

#include "editor/selection/EntityHits.h"

namespace korva::editor {

struct PickAnswer {
    int status = RTERROR;
    db::ObjectRecord* entity = nullptr;  // the top-level entity (RTNORM)
    LeafVisit leaf;                      // the innermost entity, when the pick was hit-tested
    bool byName = false;                 // given as an entity name: leaf.leaf is that entity
    KcGePoint3d ucsPoint;
};

PickAnswer promptPick(const wchar_t* prompt);
// The pick at a given point (kcedNEntSelP with a pick flag).
PickAnswer pickAtUcsPoint(const KcGePoint3d& ucsPoint);

}  // namespace korva::editor
