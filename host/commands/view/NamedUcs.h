// Named coordinate systems: the records of the UCS table (10 origin, 11 X axis,
// 12 Y axis, all in world coordinates), read, written and erased through the
// database classes.
#pragma once

#include <optional>
#include <string>

#include "db/Drawing.h"
#include "editor/Coordinates.h"

namespace korva::commands {

struct NamedUcs {
    std::wstring name;  // as the table spells it
    editor::UcsFrame frame;
};

std::optional<NamedUcs> findNamedUcs(const db::Drawing& drawing, const std::wstring& name);
// Creates the record, or replaces the axes of the one of that name; false on failure.
bool saveNamedUcs(db::Drawing& drawing, const std::wstring& name, const editor::UcsFrame& frame);
bool eraseNamedUcs(db::ObjectRecord& record);

}  // namespace korva::commands
