// New entities that are not yet in a drawing: the parts of an explode. A part is
// a view object of its class over a pending record. A complex part (a POLYLINE
// with its VERTEX records, an INSERT with its ATTRIBs) keeps its sub-records in
// its container's pending list until the part is added to a block.
#pragma once

#include <memory>
#include <vector>

#include "db/ObjectRecord.h"
#include "kcdbents.h"

namespace korva::db::geometry {

using Parts = std::vector<std::unique_ptr<KcDbEntity>>;

// The pending record of a part.
ObjectRecord& partRecord(KcDbEntity& part);

// A copy of source as a new entity of its class, with its sub-records.
std::unique_ptr<KcDbEntity> copyAsPart(const ObjectRecord& source);

// A new entity of a type whose common properties (layer, colour, linetype,
// lineweight, ...) are those of `from`, with the given fields placed in the type's
// DXF order (required fields not given take their defaults).
std::unique_ptr<KcDbEntity> newPart(TypeId type, const ObjectRecord& from, const std::vector<Tag>& fields);

// Marks an entity (and its sub-records) as being in paper space (group 67 = 1) when
// its block record is a paper-space layout, and clears the mark otherwise; files
// without owner handles tell the spaces apart by it.
void markSpace(ObjectRecord& entity, const ObjectRecord& blockRecord);

}  // namespace korva::db::geometry
