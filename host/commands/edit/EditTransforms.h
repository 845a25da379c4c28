// The two ways an editing command changes the selected objects with a
// transformation: in place (MOVE, ROTATE, SCALE, MIRROR with "Yes"), where the
// objects keep their names and handles, or as transformed copies added to the
// block record that holds each source (COPY, the Copy options, MIRROR "No").
#pragma once

#include <vector>

#include "kcdbents.h"

namespace korva::commands {

// The object each source became (itself, or its copy), the null id where it
// could not take the transformation; a message counts the failures.
std::vector<KcDbObjectId> transformObjects(const std::vector<KcDbObjectId>& ids, const KcGeMatrix3d& m);
std::vector<KcDbObjectId> copyObjects(const std::vector<KcDbObjectId>& ids, const KcGeMatrix3d& m);

// The translation from one UCS point to another, in world terms.
KcGeMatrix3d displacementBetween(const kcad_point from, const kcad_point to);

}  // namespace korva::commands
