// Editing an entity's own groups as a decoded tag vector. The geometry code reads
// and rewrites points, lengths and angles in place; this class knows which tags are
// the entity's data (not its handle, owner, 102 groups, common entity part or
// extended data), which subclass each tag belongs to, and how a point keeps the
// form (10/20 pair or 10/20/30 triple) the file gave it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"

namespace korva::db::geometry {

class EntityTags {
public:
    explicit EntityTags(const ObjectRecord& record);

    std::vector<Tag> tags;

    size_t size() const { return tags.size(); }
    bool isData(size_t index) const { return index < data_.size() && data_[index]; }
    // The subclass marker of a data tag; empty in records without markers.
    std::string_view markerAt(size_t index) const;
    // Index of the first extended-data tag (1001), or size().
    size_t extendedDataStart() const { return xdata_; }

    // The first data tag with this code, or nullptr.
    Tag* first(int code);
    const Tag* first(int code) const;
    double real(int code, double fallback) const;
    int64_t integer(int code, int64_t fallback) const;
    KcGePoint3d point(int code, const KcGePoint3d& fallback = KcGePoint3d::kOrigin) const;
    KcGeVector3d normal() const;  // group 210, the world z axis when absent

    // Replaces the value of a present data tag; false when there is none.
    bool setReal(int code, double value);
    bool setPoint(int code, const KcGePoint3d& value);

    void commit(ObjectRecord& record) const { record.tags = TagList::encode(tags); }

private:
    std::vector<bool> data_;
    std::vector<uint16_t> run_;  // index into markers_ of each tag
    std::vector<std::string> markers_;
    size_t xdata_ = 0;
};

// Writes a point into a tag, keeping a 10/20 pair a pair when z is zero (and always
// for points that are two-dimensional by definition, such as LWPOLYLINE vertices).
void assignPoint(Tag& tag, const KcGePoint3d& value, bool alwaysTwoDimensional = false);

// The subclass a group of this record's type belongs to, for inserting a missing
// group in DXF order: the first marker of the record (or of its type's field table)
// whose fields include the code.
std::string_view fieldMarker(const ObjectRecord& record, int code);

// Sets a group, inserting it in DXF order when the record lacks it.
void writeField(ObjectRecord& record, const Tag& value);

}  // namespace korva::db::geometry
