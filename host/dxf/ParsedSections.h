// What the section parser hands to the binder: every record already created in
// the drawing's store, grouped the way the file grouped them.
#pragma once

#include <vector>

#include "db/Drawing.h"

namespace korva::dxf {

struct ParsedTable {
    db::ObjectRecord* head = nullptr;
    std::vector<db::ObjectRecord*> records;
};

struct ParsedBlock {
    db::ObjectRecord* begin = nullptr;
    std::vector<db::ObjectRecord*> entities;  // flat: attributes, vertices and SEQENDs included
    db::ObjectRecord* end = nullptr;
};

struct ParsedSections {
    bool hasHeader = false;
    std::vector<ParsedTable> tables;
    std::vector<ParsedBlock> blocks;
    std::vector<db::ObjectRecord*> entities;  // flat, as in the ENTITIES section
    std::vector<db::ObjectRecord*> objects;
    std::vector<db::ObjectRecord*> withoutHandle;     // records whose handle was missing or unreadable
    std::vector<db::ObjectRecord*> duplicateHandles;  // records whose handle an earlier record had
};

}  // namespace korva::dxf
