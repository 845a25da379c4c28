// Dimension variables of entities drawn with a dimension style (LEADER,
// TOLERANCE): an entity's own overrides live in its extended data as
//   1001 "ACAD", 1000 "DSTYLE", 1002 "{", (1070 variable code, value)..., 1002 "}"
// where the variable code is the DIMSTYLE group code (41 DIMASZ, 147 DIMGAP,
// 40 DIMSCALE, 140 DIMTXT, 176 DIMCLRD, 178 DIMCLRT). Without an override the
// value comes from the entity's dimension style. Private to host/db/entities.
#pragma once

#include <optional>
#include <string_view>

#include "db/ObjectRecord.h"
#include "kcdbents.h"

namespace korva::db {

std::optional<double> dimStyleOverride(const ObjectRecord& entity, int variableCode);

// The override, else the group of the DIMSTYLE record the entity names (styleMarker,
// group 3), else fallback.
double dimVariable(const ObjectRecord& entity, std::string_view styleMarker, int variableCode, double fallback);

// Writes (or replaces) an integer override such as a colour index; registers
// the "ACAD" application when the drawing lacks it.
void setDimStyleOverride(ObjectRecord& entity, int variableCode, int64_t value);

// Sets a colour override (DIMCLRD 176, DIMCLRT 178) as the colour's index.
Kcad::ErrorStatus setDimColorOverride(ObjectRecord& entity, Kcad::ErrorStatus writable, int variableCode,
                                      const KcCmColor& color);

}  // namespace korva::db
