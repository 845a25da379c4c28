// Applying a list to a record (kcdbEntMod and kcdbEntMake). The record's parts
// are updated group by group; everything the list does not mention stays.
#include <cmath>
#include <functional>
#include <map>

#include "db/Drawing.h"
#include "db/EntityList.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordParts.h"
#include "db/RecordTags.h"
#include "db/TextAlignment.h"
#include "db/TextCase.h"

namespace korva::db {

namespace {

int fieldIndex(std::span<const FieldSpec> fields, int code) {
    for (size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].code == code) return static_cast<int>(i);
    }
    return -1;
}

bool isRepeated(std::span<const FieldSpec> fields, int code) {
    for (const FieldSpec& f : fields) {
        if (f.code == code) return (f.flags & kFieldRepeat) != 0;
    }
    return false;
}

// Places an item as the k-th occurrence of its code: replaces the stored one, or
// inserts it after the last group that comes before it in DXF order.
void placeItem(std::vector<Tag>& tags, const Tag& item, int occurrence, const std::function<int(int)>& orderOf) {
    int seen = 0;
    for (Tag& t : tags) {
        if (t.code != item.code) continue;
        if (seen++ == occurrence) {
            Tag value = item;
            // A stored 10/20 pair stays a pair when given back with z = 0.
            if (t.kind == TagKind::Point2 && item.kind == TagKind::Point3 && item.xyz[2] == 0.0) value.kind = TagKind::Point2;
            t = value;
            return;
        }
    }
    const int wanted = orderOf(item.code);
    size_t at = tags.size();
    if (wanted >= 0) {
        for (size_t i = 0; i < tags.size(); ++i) {
            const int other = orderOf(tags[i].code);
            if (other > wanted) {
                at = i;
                break;
            }
        }
        // After the last occurrence of the same code, keeping repeated groups together.
        for (size_t i = 0; i < tags.size(); ++i) {
            if (tags[i].code == item.code) at = std::max(at == tags.size() ? 0 : at, i + 1);
        }
    }
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(std::min(at, tags.size())), item);
}

// An angle given in radians, in degrees as the record keeps it. When it is the
// stored angle's own conversion, the stored value is kept exactly: an unchanged
// list must not change a value by rounding.
double storedDegrees(const std::vector<Tag>& stored, const std::vector<Tag>& earlierItems, const Tag& item) {
    int occurrence = 0;
    for (const Tag& t : earlierItems) occurrence += t.code == item.code ? 1 : 0;
    for (const Tag& t : stored) {
        if (t.code != item.code || occurrence-- != 0) continue;
        if (t.kind == TagKind::Real && t.xyz[0] * kRadiansPerDegree == item.xyz[0]) return t.xyz[0];
        break;
    }
    return item.xyz[0] / kRadiansPerDegree;
}

bool storesCode(const std::vector<Tag>& tags, int code) {
    for (const Tag& t : tags) {
        if (t.code == code) return true;
    }
    return false;
}

bool isDefaultValue(std::span<const FieldSpec> fields, const Tag& item) {
    const int index = fieldIndex(fields, item.code);
    if (index < 0) return false;
    Tag fallback = fields[static_cast<size_t>(index)].defaultTag();
    if (fallback.kind == TagKind::Point3 && item.kind == TagKind::Point3) return fallback.xyz == item.xyz;
    return fallback == item;
}

// Applies the items meant for one subclass run.
void applyToRun(SubclassRun& run, std::span<const FieldSpec> fields, const std::vector<Tag>& items) {
    std::vector<Tag> repeated;
    bool hasRepeated = false;
    for (const Tag& item : items) hasRepeated = hasRepeated || isRepeated(fields, item.code);
    if (hasRepeated) {
        // Repeated data (vertices, knots, text chunks) is replaced as a whole.
        size_t firstRepeated = run.tags.size();
        std::vector<Tag> kept;
        for (size_t i = 0; i < run.tags.size(); ++i) {
            if (isRepeated(fields, run.tags[i].code)) {
                firstRepeated = std::min(firstRepeated, kept.size());
                continue;
            }
            kept.push_back(run.tags[i]);
        }
        for (const Tag& item : items) {
            if (isRepeated(fields, item.code)) repeated.push_back(item);
        }
        if (firstRepeated == run.tags.size()) {
            // No stored repeated data: the items go where the first of them belongs.
            firstRepeated = kept.size();
            const int wanted = fieldIndex(fields, repeated.front().code);
            for (size_t i = 0; i < kept.size(); ++i) {
                if (fieldIndex(fields, kept[i].code) > wanted) {
                    firstRepeated = i;
                    break;
                }
            }
        }
        kept.insert(kept.begin() + static_cast<std::ptrdiff_t>(firstRepeated), repeated.begin(), repeated.end());
        run.tags = std::move(kept);
    }
    std::map<int, int> occurrences;
    const std::function<int(int)> orderOf = [&](int code) { return fieldIndex(fields, code); };
    for (const Tag& item : items) {
        if (isRepeated(fields, item.code)) continue;
        const int occurrence = occurrences[item.code]++;
        // A group the record leaves out reads as its default: giving the default
        // back (an unchanged list) adds nothing.
        if (occurrence == 0 && !storesCode(run.tags, item.code) && isDefaultValue(fields, item)) continue;
        placeItem(run.tags, item, occurrence, orderOf);
    }
}

bool listsCode(std::span<const FieldSpec> fields, const std::vector<Tag>& stored, int code) {
    if (fieldIndex(fields, code) >= 0) return true;
    for (const Tag& t : stored) {
        if (t.code == code) return true;
    }
    return false;
}

// The run an item belongs to: the current one when it knows the code, else the
// first that does, else the current one.
size_t runFor(const RecordParts& parts, TypeId type, size_t current, int code) {
    if (current < parts.runs.size() && listsCode(runFields(type, parts.runs, current), parts.runs[current].tags, code)) {
        return current;
    }
    for (size_t i = 0; i < parts.runs.size(); ++i) {
        if (listsCode(runFields(type, parts.runs, i), parts.runs[i].tags, code)) return i;
    }
    return std::min(current, parts.runs.empty() ? size_t{0} : parts.runs.size() - 1);
}

std::string validateReferences(Drawing& drawing, const ObjectRecord& record, const std::vector<Tag>& items) {
    for (const Tag& item : items) {
        if (item.code == 6 && !namesEqual(item.text, "ByLayer") && !namesEqual(item.text, "ByBlock") &&
            !drawing.tableRecord("LTYPE", item.text)) {
            return "linetype \"" + item.text + "\" does not exist";
        }
        const bool textual = record.type == Type::Text || record.type == Type::MText || record.type == Type::AttDef ||
                             record.type == Type::Attrib;
        if (item.code == 7 && textual && !drawing.tableRecord("STYLE", item.text)) {
            return "text style \"" + item.text + "\" does not exist";
        }
        if (item.code == 8 && item.text.empty()) return "a layer name cannot be empty";
    }
    return {};
}

// LAYER records: group 70 sets only the frozen, frozen-in-new-viewports and
// locked bits; the sign of 62 says whether the layer is on.
void mergeLayerFlags(const ObjectRecord& record, std::vector<Tag>& items) {
    const int64_t stored = fieldInteger(record, {}, 70, 0);
    for (Tag& item : items) {
        if (item.code == 70) item.integer = (stored & ~int64_t{7}) | (item.integer & 7);
    }
}

// MTEXT: when a list gives both the direction (11) and the rotation (50), the
// last one wins. A rotation that agrees with the direction changes nothing.
void reconcileMTextRotation(ObjectRecord& record, const std::vector<Tag>& items) {
    const Tag* last = nullptr;
    for (const Tag& item : items) {
        if (item.code == 11 || item.code == 50) last = &item;
    }
    if (!last) return;
    const double current = mtextRotation(record);
    if (last->code == 50) {
        const double angle = last->xyz[0];
        if (std::fabs(angle - current) < 1e-12) return;
        const KcGeVector3d normal = fieldVector(record, "AcDbMText", 210, KcGeVector3d::kZAxis);
        const KcGeVector3d direction =
            KcGeMatrix3d::planeToWorld(normal) * KcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
        setField(record, "AcDbMText", Tag::point(11, {direction.x, direction.y, direction.z}));
    } else if (hasField(record, "AcDbMText", 50) && fieldReal(record, "AcDbMText", 50, 0.0) != current) {
        setField(record, "AcDbMText", Tag::real(50, current));
    }
}

}  // namespace

std::string applyList(ObjectRecord& record, const std::vector<Tag>& list) {
    if (!record.drawing) return "the object is not in a drawing";
    Drawing& drawing = *record.drawing;
    const bool entity = record.isEntity();
    RecordParts parts = splitRecord(record);

    // The items to apply, without the groups the host owns. Each remembers the
    // subclass marker it followed in the list (a list from kcdbEntGet has them).
    std::vector<Tag> items;
    std::vector<std::pair<std::string, int>> itemMarkers;  // marker and how often the list named it so far
    std::vector<Tag> xdata;
    bool inXdata = false;
    bool inGroup = false;
    std::string marker;
    std::map<std::string, int> markerCount;
    for (const Tag& item : list) {
        if (item.code == -3) {
            inXdata = true;
            continue;
        }
        if (inXdata) {
            if (item.code < 1000) return "group " + std::to_string(item.code) + " in extended data";
            xdata.push_back(item);
            continue;
        }
        if (item.code == 102) {
            inGroup = !item.text.empty() && item.text.front() == '{';
            continue;
        }
        if (item.code == 100) {
            marker = item.text;
            ++markerCount[marker];
            continue;
        }
        if (inGroup || item.code == -1 || item.code == -2 || item.code == 0 || item.code == 5 || item.code == 105 ||
            item.code == 330 || item.code == 67 || item.code == 410) {
            continue;
        }
        if (item.code >= 1000) return "group " + std::to_string(item.code) + " outside the extended data";
        items.push_back(item);
        itemMarkers.emplace_back(marker, marker.empty() ? 0 : markerCount[marker]);
    }
    if (std::string problem = validateReferences(drawing, record, items); !problem.empty()) return problem;
    if (record.type == Type::MText && !hasField(record, "AcDbMText", 50)) {
        // The list's rotation was derived from the direction: it adds nothing by itself.
        const double derived = mtextRotation(record);
        std::erase_if(items, [&](const Tag& item) { return item.code == 50 && std::fabs(item.xyz[0] - derived) < 1e-12; });
    }
    if (record.type == Type::Layer) mergeLayerFlags(record, items);

    // Angles arrive in radians; the record keeps what the file holds.
    size_t run = 0;
    std::vector<std::vector<Tag>> runItems(parts.runs.size());
    std::vector<Tag> commonItems;
    for (size_t i = 0; i < items.size(); ++i) {
        Tag item = items[i];
        const std::string& itemMarker = itemMarkers[i].first;
        // The run a marker of the list names (the n-th time the list names it).
        size_t named = parts.runs.size();
        if (!itemMarker.empty() && itemMarker != "AcDbEntity") {
            int occurrence = itemMarkers[i].second;
            for (size_t r = 0; r < parts.runs.size(); ++r) {
                if (parts.runs[r].marker == itemMarker && --occurrence == 0) named = r;
            }
        }
        // The AcDbEntity part takes what the list put there, and common groups the list
        // gives without a subclass of their own (appended at the end, or a list without markers).
        const bool inCommonPart = itemMarker == "AcDbEntity";
        const bool namedRunKnowsCode =
            named < parts.runs.size() && listsCode(runFields(record.type, parts.runs, named), parts.runs[named].tags, item.code);
        if (entity && (inCommonPart || (isCommonEntityCode(item.code) && !namedRunKnowsCode))) {
            commonItems.push_back(item);
            continue;
        }
        if (parts.runs.empty()) parts.runs.push_back({{}, {}}), runItems.emplace_back();
        run = named < parts.runs.size() ? named : runFor(parts, record.type, run, item.code);
        const auto fields = runFields(record.type, parts.runs, run);
        const bool angle = (item.kind == TagKind::Real) &&
                           ((record.type == Type::Style && item.code == 50) ||
                            [&] {
                                for (const FieldSpec& f : fields) {
                                    if (f.code == item.code) return f.angle();
                                }
                                return false;
                            }());
        if (angle) item.xyz[0] = storedDegrees(parts.runs[run].tags, runItems[run], item);
        runItems[run].push_back(item);
    }
    // The new layer must exist; a missing one is created with defaults, as hosts do.
    for (const Tag& item : commonItems) {
        if (item.code == 8 && !drawing.tableRecord("LAYER", item.text)) createTableRecord(drawing, "LAYER", item.text);
    }
    std::map<int, int> occurrences;
    const std::function<int(int)> commonOrder = [](int code) { return commonEntityOrder(code); };
    for (const Tag& item : commonItems) {
        const int occurrence = occurrences[item.code]++;
        // Layer "0" is what a record without a layer group is on.
        if (item.code == 8 && item.text == "0" && occurrence == 0 && !storesCode(parts.common, 8)) continue;
        placeItem(parts.common, item, occurrence, commonOrder);
    }
    for (size_t i = 0; i < parts.runs.size(); ++i) {
        if (!runItems[i].empty()) applyToRun(parts.runs[i], runFields(record.type, parts.runs, i), runItems[i]);
    }
    // Parts equal to the stored ones mean the list changed nothing: keep the tags
    // exactly as they stand (old files may hold groups in an unusual order).
    const RecordParts stored = splitRecord(record);
    bool changed = stored.common != parts.common || stored.runs.size() != parts.runs.size();
    for (size_t i = 0; !changed && i < parts.runs.size(); ++i) {
        changed = stored.runs[i].marker != parts.runs[i].marker || stored.runs[i].tags != parts.runs[i].tags;
    }
    if (changed) record.tags = joinParts(parts, entity);

    for (size_t i = 0; i < xdata.size();) {
        if (xdata[i].code != 1001) return "extended data must start with an application name (1001)";
        const std::string application = xdata[i].text;
        if (!drawing.tableRecord("APPID", application)) return "application \"" + application + "\" is not registered";
        std::vector<Tag> block;
        for (++i; i < xdata.size() && xdata[i].code != 1001; ++i) block.push_back(xdata[i]);
        writeExtendedData(record, application, block);
    }
    if (record.type == Type::MText && changed) reconcileMTextRotation(record, list);
    const bool text = record.type == Type::Text || record.type == Type::Attrib || record.type == Type::AttDef;
    if (text && changed) alignTextPosition(record);
    if (record.kind == RecordKind::TableRecord) {
        for (SymbolTable& table : drawing.tables) {
            if (table.head == record.owner) table.invalidateIndex();
        }
    }
    return {};
}

}  // namespace korva::db
