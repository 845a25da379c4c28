// Structural tags of a record: its own handle (5, or 105 for DIMSTYLE), its
// owner (the first 330 outside a 102 group), the 102 application groups and the
// start of its extended data. Used by the binder, the audit and the writer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"

namespace korva::db {

// A handle as DXF writes it: upper-case hexadecimal without leading zeros.
std::string formatHandle(Handle handle);

// The group code of a record's own handle.
inline int handleCodeOf(TypeId type) { return type == Type::DimStyle ? 105 : 5; }

// The handle written in the record's tags; false when absent or unreadable.
bool readOwnHandle(const ObjectRecord& record, Handle& handle);
// Whether the record has a handle tag at all (even an empty or broken one).
bool hasHandleTag(const ObjectRecord& record);
// The owner handle of the tags (first 330 before the first subclass marker, outside 102 groups).
bool readOwnerHandle(const ObjectRecord& record, Handle& owner);

// Sets the handle tag, replacing a present one (even a broken one) or inserting it first.
void writeOwnHandle(ObjectRecord& record, Handle handle);
// Sets the owner tag in place, or inserts it after the handle and the 102 groups.
void writeOwnerHandle(ObjectRecord& record, Handle owner);

// The handles in a 102 group ("{ACAD_REACTORS" or "{ACAD_XDICTIONARY").
std::vector<Handle> applicationGroupHandles(const ObjectRecord& record, std::string_view groupName);

// Rewrites a 102 group with these handles (group code `code`), placing a new group
// after the handle and before the owner; an empty list removes the group.
void writeApplicationGroup(ObjectRecord& record, std::string_view groupName, int code, const std::vector<Handle>& handles);

// The extended data of the record: every tag from the first 1001 on.
std::vector<Tag> extendedData(const TagList& tags);
// Replaces (or with no items, removes) one application's extended data; items
// exclude the 1001 tag. A new application's data goes at the end.
void writeExtendedData(ObjectRecord& record, std::string_view application, const std::vector<Tag>& items);

// The tags of a record without its identity: handle, owner and 102 groups
// (reactors, extension dictionary), for a copy that becomes a new object.
TagList copyWithoutIdentity(const TagList& tags);

// Index of the first tag of extended data (the first 1001), or the tag count.
uint32_t extendedDataStart(const TagList& tags);

// Whether the record carries subclass markers (files from AC1012 on).
bool hasSubclassMarkers(const TagList& tags);

}  // namespace korva::db
