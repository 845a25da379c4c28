// Dimension-style overrides in the "ACAD" extended data of an entity.
#include "db/entities/DimStyleOverrides.h"

#include <vector>

#include "db/Drawing.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"

namespace korva::db {

namespace {

constexpr std::string_view kApplication = "ACAD";

// The items of the "ACAD" application (without its 1001 tag).
std::vector<Tag> acadItems(const ObjectRecord& entity) {
    std::vector<Tag> items;
    bool inside = false;
    for (const Tag& tag : extendedData(entity.tags)) {
        if (tag.code == 1001) {
            if (inside) break;
            inside = tag.text == kApplication;
            continue;
        }
        if (inside) items.push_back(tag);
    }
    return items;
}

// The positions of the "{" and "}" of the DSTYLE list; false when there is none.
bool findStyleList(const std::vector<Tag>& items, size_t& open, size_t& close) {
    for (size_t i = 0; i + 1 < items.size(); ++i) {
        if (items[i].code != 1000 || items[i].text != "DSTYLE") continue;
        if (items[i + 1].code != 1002 || items[i + 1].text != "{") continue;
        open = i + 1;
        for (size_t j = open + 1; j < items.size(); ++j) {
            if (items[j].code == 1002 && items[j].text == "}") {
                close = j;
                return true;
            }
        }
    }
    return false;
}

double numberOf(const Tag& tag) {
    return tag.kind == TagKind::Integer ? static_cast<double>(tag.integer) : tag.realValue();
}

}  // namespace

std::optional<double> dimStyleOverride(const ObjectRecord& entity, int variableCode) {
    const std::vector<Tag> items = acadItems(entity);
    size_t open = 0, close = 0;
    if (!findStyleList(items, open, close)) return std::nullopt;
    for (size_t i = open + 1; i + 1 < close; i += 2) {
        if (items[i].code == 1070 && items[i].integer == variableCode) return numberOf(items[i + 1]);
    }
    return std::nullopt;
}

double dimVariable(const ObjectRecord& entity, std::string_view styleMarker, int variableCode, double fallback) {
    if (const std::optional<double> value = dimStyleOverride(entity, variableCode)) return *value;
    if (!entity.drawing) return fallback;
    const ObjectRecord* style = entity.drawing->tableRecord("DIMSTYLE", fieldText(entity, styleMarker, 3, "Standard"));
    return style ? fieldReal(*style, {}, variableCode, fallback) : fallback;
}

void setDimStyleOverride(ObjectRecord& entity, int variableCode, int64_t value) {
    std::vector<Tag> items = acadItems(entity);
    size_t open = 0, close = 0;
    if (!findStyleList(items, open, close)) {
        items.push_back(Tag::string(1000, "DSTYLE"));
        items.push_back(Tag::string(1002, "{"));
        items.push_back(Tag::string(1002, "}"));
        open = items.size() - 2;
        close = items.size() - 1;
    }
    bool replaced = false;
    for (size_t i = open + 1; i + 1 < close; i += 2) {
        if (items[i].code == 1070 && items[i].integer == variableCode) {
            items[i + 1] = Tag::integerValue(1070, value);
            replaced = true;
        }
    }
    if (!replaced) {
        const std::vector<Tag> pair{Tag::integerValue(1070, variableCode), Tag::integerValue(1070, value)};
        items.insert(items.begin() + static_cast<std::ptrdiff_t>(close), pair.begin(), pair.end());
    }
    if (entity.drawing && !entity.drawing->tableRecord("APPID", kApplication)) {
        createTableRecord(*entity.drawing, "APPID", kApplication);
    }
    writeExtendedData(entity, kApplication, items);
}

Kcad::ErrorStatus setDimColorOverride(ObjectRecord& entity, Kcad::ErrorStatus writable, int variableCode,
                                      const KcCmColor& color) {
    if (writable != Kcad::eOk) return writable;
    setDimStyleOverride(entity, variableCode, color.colorIndex());
    return Kcad::eOk;
}

}  // namespace korva::db
