// The coordinate systems kcedTrans names with a result buffer: RTSHORT 0 the
// world (WCS), 1 the current UCS, 2 the display coordinates of the current
// viewport (DCS), 3 those of paper space (PSDCS); RT3DPOINT the object
// coordinate system (OCS) of that extrusion direction; RTENAME the OCS of that
// entity (its 210 group; the world for entities without one).
#pragma once

#include <optional>

#include "kcadstd.h"
#include "kcge.h"

namespace korva::editor {

class Document;

// The matrix from the named system to the world, or nothing for a code that
// names no system (an unknown number, a zero extrusion, an unknown entity).
std::optional<KcGeMatrix3d> systemToWorld(const resbuf& code, Document* document);

}  // namespace korva::editor
