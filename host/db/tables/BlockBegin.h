// The BLOCK entity of a block record: it carries the block's base point (10),
// flags (70), external reference path (1) and description (4), and repeats the
// block's name (2 and 3).
//
// A new block record has no BLOCK entity until it is added to the block table.
// Until then its BLOCK groups are kept in the record itself, in a run under the
// "AcDbBlockBegin" marker, and moved to the BLOCK entity when the record is added.
#pragma once

#include <string_view>

#include "db/Drawing.h"

namespace korva::db {

inline constexpr std::string_view kBlockBeginMarker = "AcDbBlockBegin";

// BLOCK flags (group 70).
namespace BlockFlag {
inline constexpr int64_t Anonymous = 1;
inline constexpr int64_t HasAttributes = 2;
inline constexpr int64_t External = 4;
inline constexpr int64_t Overlay = 8;
inline constexpr int64_t Dependent = 16;
inline constexpr int64_t Resolved = 32;
}  // namespace BlockFlag

// The record holding the BLOCK groups for reading; null for a resident block without BLOCK.
const ObjectRecord* blockBeginOf(const ObjectRecord& blockRecord);
// The record to write BLOCK groups to (a resident block gets its BLOCK and ENDBLK if missing).
ObjectRecord& blockBeginForWrite(ObjectRecord& blockRecord);

int64_t blockFlags(const ObjectRecord& blockRecord);
void setBlockFlags(ObjectRecord& blockRecord, int64_t flags);

// Moves the groups kept in a just-added block record to its BLOCK entity.
void moveStagedBlockGroups(ObjectRecord& blockRecord);

// Names the block record and its BLOCK entity (groups 2 and 3).
void renameBlock(ObjectRecord& blockRecord, std::string_view name);

}  // namespace korva::db
