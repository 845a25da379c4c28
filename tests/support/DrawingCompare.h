// Compares two drawings object by object: the same handles, types, owners and
// tags in the same order. Used by the round-trip tests.
#pragma once

#include <string>
#include <vector>

#include "db/Drawing.h"

namespace korva::test {

// The records a DXF writer puts in a file of the drawing's own version, in file order.
std::vector<const db::ObjectRecord*> writtenRecords(const db::Drawing& drawing);

// Differences between the written records and header variables of two drawings
// ($HANDSEED excepted); empty when they hold the same data.
std::vector<std::string> compareDrawings(const db::Drawing& expected, const db::Drawing& actual);

// One record's tags as text, for failure messages.
std::string dumpTags(const db::ObjectRecord& record);

}  // namespace korva::test
