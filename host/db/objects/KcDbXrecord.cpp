// Xrecords: free data after "100 AcDbXrecord" and its cloning flag (280), as a
// result-buffer chain. References (330-369) travel as entity names of objects
// in the xrecord's drawing.
#include <algorithm>
#include <vector>

#include "db/ObjectAccess.h"
#include "db/ResultBuffers.h"
#include "kcdbdatabase.h"

using korva::db::ObjectRecord;
using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr std::string_view kMarker = "AcDbXrecord";

// Where the data lies in a tag vector: [begin, end).
struct DataRange {
    size_t begin = 0;
    size_t end = 0;
};

DataRange dataRange(const std::vector<Tag>& tags) {
    size_t end = tags.size();
    size_t begin = end;
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code == 1001) {
            end = i;
            break;
        }
        if (begin == tags.size() && tags[i].code == 100 && tags[i].text == kMarker) {
            begin = i + 1;
            // The cloning flag comes first; files before R2000 do not write it.
            if (begin < tags.size() && tags[begin].code == 280) ++begin;
        }
    }
    return {std::min(begin, end), end};
}

// The drawing references resolve in: the xrecord's, else the one the caller names, else the working one.
const db::Drawing* drawingFor(const ObjectRecord& xrecord, KcDbDatabase* database) {
    if (xrecord.drawing) return xrecord.drawing;
    if (!database) database = kcdbHostApplicationServices()->workingDatabase();
    return database ? &database->drawing() : nullptr;
}

// Group codes an xrecord may hold as data.
bool isDataCode(int code) { return code >= 1 && code <= 369 && code != 5 && code != 100 && code != 102 && code != 105; }

}  // namespace

Kcad::ErrorStatus KcDbXrecord::rbChain(resbuf** chain, KcDbDatabase* database) const {
    if (!chain) return Kcad::eNullPtr;
    *chain = nullptr;
    const ObjectRecord& self = record();
    const std::vector<Tag> tags = self.tags.decode();
    const DataRange range = dataRange(tags);
    db::ResbufChain out;
    for (size_t i = range.begin; i < range.end; ++i) out.appendTag(tags[i], drawingFor(self, database));
    *chain = out.release();
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbXrecord::setFromRbChain(const resbuf& chain, KcDbDatabase* database) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const db::Drawing* drawing = drawingFor(self, database);
    std::vector<Tag> data;
    for (const resbuf* item = &chain; item; item = item->rbnext) {
        if (!isDataCode(item->restype)) return Kcad::eInvalidInput;
        Tag tag;
        if (!db::tagFromResbuf(*item, drawing, tag)) return Kcad::eInvalidInput;
        data.push_back(std::move(tag));
    }
    std::vector<Tag> tags = self.tags.decode();
    DataRange range = dataRange(tags);
    if (std::none_of(tags.begin(), tags.end(), [](const Tag& t) { return t.code == 100 && t.text == kMarker; })) {
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(range.begin), Tag::string(100, kMarker));
        range = {range.begin + 1, range.end + 1};
    }
    tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(range.begin), tags.begin() + static_cast<std::ptrdiff_t>(range.end));
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(range.begin), data.begin(), data.end());
    self.tags = db::TagList::encode(tags);
    return Kcad::eOk;
}
