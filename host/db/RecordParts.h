// A record's tags taken apart: the prefix (handle, 102 groups, owner), the
// common entity part (AcDbEntity), the subclass runs and the extended data.
// Records from files without subclass markers are split by the field tables,
// so that both kinds of record look alike to the entity-list code.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/EntitySchema.h"
#include "db/ObjectRecord.h"

namespace korva::db {

struct SubclassRun {
    std::string marker;  // empty for the data of a record without subclass markers
    std::vector<Tag> tags;
    // The marker was inferred: the record holds this subclass's groups without its
    // "100" marker (some writers leave it out), and writing it back leaves it out too.
    bool implicit = false;

    bool operator==(const SubclassRun& other) const { return marker == other.marker && tags == other.tags; }
};

struct RecordParts {
    bool markers = false;  // the record carries subclass markers
    std::vector<Tag> prefix;
    std::vector<Tag> common;  // entities only
    std::vector<SubclassRun> runs;
    std::vector<Tag> xdata;
};

RecordParts splitRecord(const ObjectRecord& record);
// The tags of the parts, with markers when the record had them.
TagList joinParts(const RecordParts& parts, bool isEntity);

// The field table of a subclass of a record's type (empty when the type has none).
// A marker can occur twice (TEXT has two "AcDbText" parts): occurrence picks which.
std::span<const FieldSpec> subclassFields(TypeId type, std::string_view marker, int occurrence = 0);
// The field table of one run of a record's parts, counting earlier runs of the same marker.
std::span<const FieldSpec> runFields(TypeId type, const std::vector<SubclassRun>& runs, size_t index);
// The subclass markers a record of this type carries, in DXF order, given its tags
// (polylines, vertices and dimensions name their subclass by kind).
std::vector<std::string_view> expectedMarkers(const ObjectRecord& record);

}  // namespace korva::db
