// Reading and writing the groups of a record by subclass and group code.
//
// A group is looked up in the runs of its subclass marker (the tags after
// "100 AcDbText" up to the next marker); records from files without markers
// are searched whole. A setter replaces the group where it stands, or inserts it
// where the DXF order of its type puts it, so that nothing else moves.
#pragma once

#include <initializer_list>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"

namespace korva::db {

inline constexpr std::string_view kEntityMarker = "AcDbEntity";

bool findField(const ObjectRecord& record, std::string_view marker, int code, TagRef& out);
bool hasField(const ObjectRecord& record, std::string_view marker, int code);

double fieldReal(const ObjectRecord& record, std::string_view marker, int code, double fallback = 0.0);
int64_t fieldInteger(const ObjectRecord& record, std::string_view marker, int code, int64_t fallback = 0);
std::string_view fieldText(const ObjectRecord& record, std::string_view marker, int code,
                           std::string_view fallback = {});
KcGePoint3d fieldPoint(const ObjectRecord& record, std::string_view marker, int code,
                       const KcGePoint3d& fallback = KcGePoint3d::kOrigin);
KcGeVector3d fieldVector(const ObjectRecord& record, std::string_view marker, int code,
                         const KcGeVector3d& fallback);
Handle fieldHandle(const ObjectRecord& record, std::string_view marker, int code);

// Sets the first group of that code in the subclass, or inserts it.
void setField(ObjectRecord& record, std::string_view marker, const Tag& value);
// Removes the first group of that code in the subclass; false when there was none.
bool removeField(ObjectRecord& record, std::string_view marker, int code);

// All tags of that code in the subclass, in order.
std::vector<TagRef> fieldsOf(const ObjectRecord& record, std::string_view marker, int code);

// Replaces the tags of a subclass run from the first tag of code `from` up to the
// first tag of code `until` or the run's end (repeated data such as vertices).
void replaceRun(ObjectRecord& record, std::string_view marker, int from, int until, const std::vector<Tag>& tags);

// Removes every group of these codes from the subclass run and puts replacement
// where the first of them stood (the run's end when there was none; a missing
// subclass is added before the extended data).
void replaceGroups(ObjectRecord& record, std::string_view marker, std::initializer_list<int> codes,
                   const std::vector<Tag>& replacement);

// Where a subclass run lies in a record's decoded tags: [begin, end). A record
// without markers is one run up to its extended data; when the record has markers
// but not this one, found is false and begin = end = the start of the extended data.
struct RunRange {
    size_t begin = 0;
    size_t end = 0;
    bool found = false;
};
RunRange findRun(const std::vector<Tag>& tags, std::string_view marker);

}  // namespace korva::db
