// Entity lists: the data list of a record as the C-level API hands it out
// (kcdbEntGet, kcdbTblSearch) and the application of a list to a record
// (kcdbEntMod, kcdbEntMake).
//
// A list is a sequence of tags in DXF order: (-1 name) (0 type) (330 owner)
// (5 handle), the 102 groups, "AcDbEntity" with the layout name and layer, the
// common properties that are set, then each subclass with all its groups (the
// defaults of those the file left out) and angles in radians. References are
// handle tags here; the result-buffer conversion turns them into entity names.
#pragma once

#include <string>
#include <vector>

#include "db/ObjectRecord.h"

namespace korva::db {

struct ListOptions {
    bool extendedData = false;
    std::vector<std::string> applications;  // "*" stands for every application
};

std::vector<Tag> entityList(const ObjectRecord& record, const ListOptions& options = {});

// The list of a symbol table record as kcdbTblSearch gives it: (-1 name)
// (0 type) and the record's own groups; for a block, its BLOCK entity's groups
// and (-2 first entity).
std::vector<Tag> tableRecordList(const ObjectRecord& record);

// Applies a list to a record: each group replaces the group it corresponds to
// (the k-th occurrence of a code in a subclass), missing groups are inserted in
// DXF order, repeated data (vertices, text chunks) is replaced whole, and -1, 0,
// 5, 330, 100 and 102 are left alone. Returns an empty string on success, else
// the reason; the record is unchanged on failure.
std::string applyList(ObjectRecord& record, const std::vector<Tag>& list);

}  // namespace korva::db
