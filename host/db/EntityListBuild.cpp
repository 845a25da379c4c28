// Building entity and table-record lists from records.
#include <cmath>
#include <map>

#include "db/Drawing.h"
#include "db/EntityList.h"
#include "db/RecordFields.h"
#include "db/RecordParts.h"
#include "db/RecordTags.h"
#include "db/SymbolTable.h"
#include "db/TextAlignment.h"
#include "db/TextCase.h"

namespace korva::db {

namespace {

int fieldAt(std::span<const FieldSpec> fields, int code, const std::vector<bool>& used) {
    for (size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].code == code && !used[i]) return static_cast<int>(i);
    }
    return -1;
}

bool isAngle(std::span<const FieldSpec> fields, int code) {
    for (const FieldSpec& f : fields) {
        if (f.code == code) return f.angle();
    }
    return false;
}

Tag asListItem(const Tag& stored, bool angle) {
    if (angle && stored.kind == TagKind::Real) return Tag::real(stored.code, stored.xyz[0] * kRadiansPerDegree);
    return stored;
}

// One subclass: the marker, then the stored groups in their order with the
// defaults of the required groups the record lacks, each where DXF order puts it.
void appendRun(std::vector<Tag>& out, const std::string& marker, std::span<const FieldSpec> fields,
               const std::vector<Tag>& stored) {
    if (!marker.empty()) out.push_back(Tag::string(100, marker));
    std::vector<bool> used(fields.size(), false);
    auto present = [&](int code) {
        for (const Tag& t : stored) {
            if (t.code == code) return true;
        }
        return false;
    };
    auto defaultsBefore = [&](size_t limit) {
        for (size_t j = 0; j < limit; ++j) {
            if (used[j] || fields[j].optional() || present(fields[j].code)) continue;
            out.push_back(fields[j].defaultTag());
            used[j] = true;
        }
    };
    for (const Tag& t : stored) {
        const int index = fieldAt(fields, t.code, used);
        if (index >= 0) {
            defaultsBefore(static_cast<size_t>(index));
            used[static_cast<size_t>(index)] = true;
        }
        out.push_back(asListItem(t, isAngle(fields, t.code)));
    }
    defaultsBefore(fields.size());
}

// The layout tab an entity's block record belongs to: "Model", a layout's name,
// or empty for block definitions.
std::string layoutNameOf(const ObjectRecord& entity) {
    const ObjectRecord* block = entity.owner;
    while (block && block->type != Type::BlockRecord) block = block->owner;
    if (!block || !entity.drawing) return {};
    if (block == entity.drawing->modelSpace()) return "Model";
    if (!entity.drawing->isLayoutBlock(block)) return {};
    if (const ObjectRecord* layout = entity.drawing->findByHandle(fieldHandle(*block, {}, 340))) {
        TagRef name;
        if (findField(*layout, "AcDbLayout", 1, name)) return std::string(name.text());
    }
    return "Layout1";
}

void appendCommon(std::vector<Tag>& out, const ObjectRecord& record, const RecordParts& parts) {
    out.push_back(Tag::string(100, "AcDbEntity"));
    bool paper = false;
    for (const Tag& t : parts.common) paper = paper || (t.code == 67 && t.integer == 1);
    if (paper) out.push_back(Tag::integerValue(67, 1));
    if (const std::string layout = layoutNameOf(record); !layout.empty()) out.push_back(Tag::string(410, layout));
    std::string layer = "0";
    for (const Tag& t : parts.common) {
        if (t.code == 8) layer = t.text;
    }
    out.push_back(Tag::string(8, layer));
    for (const Tag& t : parts.common) {
        if (t.code == 67 || t.code == 410 || t.code == 8) continue;
        out.push_back(t);
    }
}

void appendExtendedData(std::vector<Tag>& out, const RecordParts& parts, const ListOptions& options) {
    std::vector<Tag> selected;
    bool taking = false;
    for (const Tag& t : parts.xdata) {
        if (t.code == 1001) {
            taking = false;
            for (const std::string& app : options.applications) {
                if (app == "*" || namesEqual(app, t.text)) taking = true;
            }
        }
        if (taking) selected.push_back(t);
    }
    if (selected.empty()) return;
    out.push_back(Tag::make(-3, TagKind::String));
    out.insert(out.end(), selected.begin(), selected.end());
}

// MTEXT lists always carry the rotation (50): when the file left it out, it is
// the angle of the direction (11) in the plane of the normal.
void fillMTextRotation(const ObjectRecord& record, std::vector<Tag>& list) {
    if (hasField(record, "AcDbMText", 50)) return;
    for (Tag& item : list) {
        if (item.code == 50) item.xyz[0] = mtextRotation(record);
    }
}

}  // namespace

std::vector<Tag> entityList(const ObjectRecord& record, const ListOptions& options) {
    std::vector<Tag> out;
    out.push_back(Tag::handle(-1, record.handle));
    out.push_back(Tag::string(0, typeName(record.type)));
    const RecordParts parts = splitRecord(record);
    if (!record.isEntity()) {
        // Table records and objects: their groups as stored, angles in radians.
        for (const Tag& t : parts.prefix) out.push_back(t);
        for (const SubclassRun& run : parts.runs) {
            if (!run.marker.empty()) out.push_back(Tag::string(100, run.marker));
            for (const Tag& t : run.tags) {
                const bool angle = record.type == Type::Style && t.code == 50;
                out.push_back(asListItem(t, angle));
            }
        }
        if (options.extendedData) appendExtendedData(out, parts, options);
        return out;
    }
    out.push_back(Tag::handle(330, record.owner ? record.owner->handle : 0));
    out.push_back(Tag::handle(5, record.handle));
    bool inGroup = false;
    for (const Tag& t : parts.prefix) {
        if (t.code == 102) inGroup = !t.text.empty() && t.text.front() == '{';
        if (t.code == 102 || inGroup) out.push_back(t);
    }
    appendCommon(out, record, parts);
    for (size_t i = 0; i < parts.runs.size(); ++i) {
        appendRun(out, parts.runs[i].marker, runFields(record.type, parts.runs, i), parts.runs[i].tags);
    }
    if (parts.markers) {
        // Subclasses the type has that the record lacks altogether (the second
        // "AcDbText" of a TEXT counts separately from the first).
        std::map<std::string_view, int> expected;
        for (std::string_view marker : expectedMarkers(record)) {
            const int occurrence = expected[marker]++;
            int present = 0;
            for (const SubclassRun& run : parts.runs) present += run.marker == marker ? 1 : 0;
            if (present <= occurrence) appendRun(out, std::string(marker), subclassFields(record.type, marker, occurrence), {});
        }
    }
    if (record.type == Type::MText) fillMTextRotation(record, out);
    if (options.extendedData) appendExtendedData(out, parts, options);
    return out;
}

std::vector<Tag> tableRecordList(const ObjectRecord& record) {
    std::vector<Tag> out;
    out.push_back(Tag::handle(-1, record.handle));
    const bool block = record.type == Type::BlockRecord;
    out.push_back(Tag::string(0, block ? "BLOCK" : typeName(record.type)));
    const ObjectRecord* source = &record;
    if (block && record.container && record.container->begin) source = record.container->begin;
    const RecordParts parts = splitRecord(*source);
    for (const SubclassRun& run : parts.runs) {
        if (run.marker == "AcDbSymbolTableRecord") continue;
        for (const Tag& t : run.tags) {
            if (t.code == 100) continue;
            const bool angle = record.type == Type::Style && t.code == 50;
            out.push_back(asListItem(t, angle));
            if (block && t.code == 10) {
                // The first entity of the block follows the base point, as hosts list it.
                if (record.container) {
                    for (const ObjectRecord* member : record.container->members) {
                        if (member->erased) continue;
                        out.push_back(Tag::handle(-2, member->handle));
                        break;
                    }
                }
            }
        }
    }
    return out;
}

}  // namespace korva::db
