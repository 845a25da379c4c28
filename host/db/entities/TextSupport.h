// What TEXT, ATTRIB and ATTDEF share beyond the KcDbText class: the groups of
// a new single-line text, and where each type keeps its vertical justification.
// Private to host/db/entities.
#pragma once

#include <string_view>

#include "db/ObjectRecord.h"
#include "kcdbents.h"

namespace korva::db {

inline constexpr std::string_view kTextMarker = "AcDbText";

// Vertical justification: 73 of TEXT, 74 of the attribute part of ATTRIB and ATTDEF.
struct VerticalModeGroup {
    std::string_view marker;
    int code;
};
VerticalModeGroup verticalModeGroup(const ObjectRecord& text);

// Fills the groups of a new text: position, string, style by name (null: the
// working database's current style), height (0: the style's fixed height, else
// the database's TEXTSIZE) and rotation.
void initSingleLineText(ObjectRecord& text, const KcGePoint3d& position, const wchar_t* string, KcDbObjectId style,
                        double height, double rotation);

}  // namespace korva::db
