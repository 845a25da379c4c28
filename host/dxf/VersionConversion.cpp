// Record-by-record conversion between DXF generations.
#include "dxf/VersionConversion.h"

#include <algorithm>

#include "db/Drawing.h"
#include "db/RecordFields.h"
#include "db/RecordParts.h"
#include "db/RecordTags.h"
#include "db/SymbolTable.h"
#include "db/TextCase.h"

namespace korva::dxf {

using db::ObjectRecord;
using db::RecordKind;
using db::Tag;
using db::TagKind;
namespace Type = db::Type;

size_t ConversionLosses::total() const {
    size_t n = 0;
    for (const auto& [type, count] : leftOut) n += count;
    return n;
}

std::string ConversionLosses::describe() const {
    std::string text;
    for (const auto& [type, count] : leftOut) {
        if (!text.empty()) text += ", ";
        text += std::to_string(count) + " " + type;
    }
    return text;
}

namespace {

std::string currentBlockName(std::string_view name) {
    if (db::namesEqual(name, "$MODEL_SPACE")) return "*Model_Space";
    if (db::namesEqual(name, "$PAPER_SPACE")) return "*Paper_Space";
    return std::string(name);
}

std::string legacyBlockName(std::string_view name) {
    if (db::namesEqual(name, "*Model_Space")) return "$MODEL_SPACE";
    if (name.size() >= 12 && db::namesEqual(name.substr(0, 12), "*Paper_Space")) return "$PAPER_SPACE";
    return std::string(name);
}

db::Handle ownerHandleOf(const ObjectRecord& record) { return record.owner ? record.owner->handle : 0; }

bool isPaperSpace(const ObjectRecord& record) {
    const ObjectRecord* block = record.owner;
    while (block && block->type != Type::BlockRecord) block = block->owner;
    return block && record.drawing && block != record.drawing->modelSpace() && record.drawing->isLayoutBlock(block);
}

// Common entity groups that AC1009 files do not have.
bool isCurrentOnlyCommonCode(int code) {
    return code == 370 || code == 347 || code == 390 || code == 284 || code == 420 || code == 430 || code == 440 ||
           code == 410 || code == 48 || code == 92 || code == 310;
}

constexpr db::TypeId kLegacyEntityTypes[] = {
    Type::Line, Type::Point, Type::Circle, Type::Arc, Type::Trace, Type::Solid, Type::Text, Type::Shape,
    Type::Insert, Type::AttDef, Type::Attrib, Type::Polyline, Type::Vertex, Type::SeqEnd, Type::Face3d,
    Type::Dimension,
};
// VIEWPORT exists in AC1009 but keeps its data in extended data of its own
// layout; current viewports are left out rather than written half-converted.

}  // namespace

std::vector<Tag> upgradedTags(const ObjectRecord& record) {
    std::vector<Tag> out;
    const db::RecordParts parts = db::splitRecord(record);
    auto rest = [&](auto&& keep) {
        for (const db::SubclassRun& run : parts.runs) {
            for (const Tag& t : run.tags) {
                if (keep(t)) out.push_back(t);
            }
        }
    };
    switch (record.kind) {
        case RecordKind::TableHead: {
            const std::string_view name = db::recordName(record);
            out = {Tag::string(2, name), Tag::handle(5, record.handle), Tag::handle(330, 0),
                   Tag::string(100, "AcDbSymbolTable")};
            rest([](const Tag& t) { return t.code != 2; });
            if (db::namesEqual(name, "DIMSTYLE")) out.push_back(Tag::string(100, "AcDbDimStyleTable"));
            return out;
        }
        case RecordKind::TableRecord: {
            out = {Tag::handle(db::handleCodeOf(record.type), record.handle), Tag::handle(330, ownerHandleOf(record)),
                   Tag::string(100, "AcDbSymbolTableRecord")};
            if (std::string_view marker = db::tableRecordMarker(record.type); !marker.empty()) out.push_back(Tag::string(100, marker));
            // Arrow blocks of old dimension styles were names (5, 6, 7); current files hold handles there.
            const bool dimstyle = record.type == Type::DimStyle;
            rest([&](const Tag& t) { return !(dimstyle && (t.code == 5 || t.code == 6 || t.code == 7)); });
            return out;
        }
        case RecordKind::BlockBegin:
        case RecordKind::BlockEnd: {
            out = {Tag::handle(5, record.handle), Tag::handle(330, ownerHandleOf(record)), Tag::string(100, "AcDbEntity")};
            const std::string_view name = record.owner ? db::recordName(*record.owner) : std::string_view{};
            if (name.size() >= 12 && db::namesEqual(name.substr(0, 12), "*Paper_Space")) out.push_back(Tag::integerValue(67, 1));
            bool layer = false;
            for (const Tag& t : parts.common) {
                if (t.code == 8) {
                    out.push_back(t);
                    layer = true;
                }
            }
            if (!layer) out.push_back(Tag::string(8, "0"));
            out.push_back(Tag::string(100, record.kind == RecordKind::BlockBegin ? "AcDbBlockBegin" : "AcDbBlockEnd"));
            rest([&](const Tag& t) {
                if (t.code == 2 || t.code == 3) {
                    out.push_back(Tag::string(t.code, currentBlockName(t.text)));
                    return false;
                }
                return true;
            });
            return out;
        }
        case RecordKind::Entity: {
            db::RecordParts current = parts;
            current.markers = true;
            current.prefix = {Tag::handle(5, record.handle), Tag::handle(330, ownerHandleOf(record))};
            for (db::TagRef t : db::joinParts(current, true)) out.push_back(t.toTag());
            return out;
        }
        case RecordKind::Object: break;
    }
    for (db::TagRef t : record.tags) out.push_back(t.toTag());
    return out;
}

bool downgradedTags(const ObjectRecord& record, std::vector<Tag>& tags) {
    if (record.kind == RecordKind::Object || record.type == Type::BlockRecord) return false;
    if (record.kind == RecordKind::Entity &&
        std::find(std::begin(kLegacyEntityTypes), std::end(kLegacyEntityTypes), record.type) == std::end(kLegacyEntityTypes)) {
        return false;
    }
    tags.clear();
    bool prefix = true;
    bool inGroup = false;
    bool inXdata = false;
    for (db::TagRef ref : record.tags) {
        const int code = ref.code();
        if (code == 1001) inXdata = true;
        if (!inXdata) {
            if (code == 100) {
                prefix = false;
                continue;
            }
            if (prefix && code == 102) {
                inGroup = !ref.text().empty() && ref.text().front() == '{';
                continue;
            }
            if (prefix && (inGroup || code == 330 || code == 360)) continue;
            if (record.kind != RecordKind::TableHead && (code == 330 || (code >= 340 && code <= 349))) continue;
            if (isCurrentOnlyCommonCode(code) && record.kind != RecordKind::TableHead) continue;
            if (record.kind == RecordKind::BlockBegin && (code == 2 || code == 3)) {
                tags.push_back(Tag::string(code, legacyBlockName(ref.text())));
                continue;
            }
        }
        tags.push_back(ref.toTag());
    }
    return true;
}

std::vector<LegacyRecord> lightweightPolylineAsLegacy(const ObjectRecord& polyline) {
    std::vector<LegacyRecord> out;
    std::vector<Tag> common;
    for (const Tag& t : db::splitRecord(polyline).common) {
        if (!isCurrentOnlyCommonCode(t.code)) common.push_back(t);
    }
    const int64_t flags = db::fieldInteger(polyline, "AcDbPolyline", 70, 0);
    const double elevation = db::fieldReal(polyline, "AcDbPolyline", 38, 0.0);
    const KcGePoint3d normal = db::fieldPoint(polyline, "AcDbPolyline", 210, {0, 0, 1});

    LegacyRecord head{"POLYLINE", {Tag::handle(5, polyline.handle)}};
    head.tags.insert(head.tags.end(), common.begin(), common.end());
    if (isPaperSpace(polyline)) head.tags.push_back(Tag::integerValue(67, 1));
    head.tags.push_back(Tag::integerValue(66, 1));
    head.tags.push_back(Tag::point(10, {0, 0, elevation}));
    head.tags.push_back(Tag::integerValue(70, flags & 129));
    db::TagRef width;
    if (db::findField(polyline, "AcDbPolyline", 43, width)) {
        head.tags.push_back(Tag::real(40, width.real()));
        head.tags.push_back(Tag::real(41, width.real()));
    }
    if (normal != KcGePoint3d(0, 0, 1)) head.tags.push_back(Tag::point(210, normal));
    out.push_back(std::move(head));

    // Each vertex starts at a 10; its widths and bulge follow it.
    LegacyRecord* vertex = nullptr;
    bool inVertices = false;
    for (db::TagRef t : polyline.tags) {
        if (t.code() == 1001) break;
        if (t.code() == 10) {
            inVertices = true;
            out.push_back({"VERTEX", common});
            vertex = &out.back();
            const KcGePoint3d p = t.point();
            vertex->tags.push_back(Tag::point(10, {p.x, p.y, 0.0}));
            continue;
        }
        if (!inVertices || !vertex) continue;
        if (t.code() == 40 || t.code() == 41 || (t.code() == 42 && t.real() != 0.0)) {
            vertex->tags.push_back(Tag::real(t.code(), t.real()));
        }
    }
    for (size_t i = 1; i < out.size(); ++i) out[i].tags.push_back(Tag::integerValue(70, 0));
    out.push_back({"SEQEND", common});
    return out;
}

}  // namespace korva::dxf
