// Saving a drawing in another DXF generation than it was read in. Files before
// AC1012 have no subclass markers, owners, application groups, classes or
// objects, and fewer entity types; later files need all of them. Records are
// converted one by one as they are written; the drawing itself is not changed.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "db/ObjectRecord.h"

namespace korva::dxf {

// What a conversion had to leave out, by DXF type, for the save report.
struct ConversionLosses {
    std::map<std::string, size_t> leftOut;
    size_t total() const;
    std::string describe() const;
};

// The record's tags for a file of the current generation (AC1012 and later),
// for a record read from an older file.
std::vector<db::Tag> upgradedTags(const db::ObjectRecord& record);

// The record's tags for an AC1009 file; false when the type has no AC1009 form.
bool downgradedTags(const db::ObjectRecord& record, std::vector<db::Tag>& tags);

// AC1009 has no LWPOLYLINE: the POLYLINE, VERTEX and SEQEND records that replace one.
struct LegacyRecord {
    std::string type;
    std::vector<db::Tag> tags;
};
std::vector<LegacyRecord> lightweightPolylineAsLegacy(const db::ObjectRecord& polyline);

}  // namespace korva::dxf
