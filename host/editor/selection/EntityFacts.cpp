// Entity facts for filters. The common part is read in one walk that stops at
// the first subclass after "AcDbEntity", so testing the layer and colour of a
// million entities costs about what reading their layers does.
#include "editor/selection/EntityFacts.h"

#include "db/EntityList.h"
#include "db/ObjectType.h"

namespace korva::editor {

CommonProperties commonProperties(const db::ObjectRecord& entity) {
    CommonProperties out;
    bool inGroup = false;
    bool seenEntityMarker = false;
    for (db::TagRef t : entity.tags) {
        const int code = t.code();
        if (code == 1001) break;
        if (code == 102) {
            inGroup = !t.text().empty() && t.text().front() == '{';
            continue;
        }
        if (inGroup) continue;
        if (code == 100) {
            // The common groups end where the entity's own subclass begins.
            if (seenEntityMarker) break;
            seenEntityMarker = t.text() == "AcDbEntity";
            continue;
        }
        if (code == 8) out.layer = t.text();
        else if (code == 62) out.colour = static_cast<int>(t.integer());
        else if (code == 60) out.invisible = t.integer() == 1;
    }
    return out;
}

std::string_view EntityFacts::typeName() const { return db::typeName(entity_.type); }

const CommonProperties& EntityFacts::common() {
    if (!common_) common_ = commonProperties(entity_);
    return *common_;
}

const std::vector<db::Tag>& EntityFacts::list() {
    if (!list_) list_ = db::entityList(entity_);
    return *list_;
}

std::optional<std::vector<std::string_view>> EntityFacts::storedTexts(int code) const {
    std::vector<std::string_view> out;
    bool inGroup = false;
    for (db::TagRef t : entity_.tags) {
        const int c = t.code();
        if (c == 1001) break;
        if (c == 102) {
            inGroup = !t.text().empty() && t.text().front() == '{';
            continue;
        }
        if (!inGroup && c == code && t.kind() == db::TagKind::String) out.push_back(t.text());
    }
    if (out.empty()) return std::nullopt;
    return out;
}

std::vector<db::Tag> EntityFacts::values(int code) {
    if (code == 0) return {db::Tag::string(0, typeName())};
    if (code == 8) return {db::Tag::string(8, common().layer)};
    if (code == 62) return {db::Tag::integerValue(62, common().colour)};
    std::vector<db::Tag> out;
    for (const db::Tag& t : list()) {
        if (t.code == code) out.push_back(t);
    }
    if (!out.empty()) return out;
    // Common groups a list leaves out when they hold their defaults.
    switch (code) {
        case 6: return {db::Tag::string(6, "BYLAYER")};
        case 48: return {db::Tag::real(48, 1.0)};
        case 60: return {db::Tag::integerValue(60, 0)};
        case 67: return {db::Tag::integerValue(67, 0)};
        case 370: return {db::Tag::integerValue(370, -1)};
        default: return out;
    }
}

std::vector<std::string_view> EntityFacts::applicationGroups() const {
    std::vector<std::string_view> out;
    for (db::TagRef t : entity_.tags) {
        if (t.code() == 1001) break;
        if (t.code() == 102 && !t.text().empty() && t.text().front() == '{') out.push_back(t.text());
    }
    return out;
}

std::vector<std::string_view> EntityFacts::extendedDataApplications() const {
    std::vector<std::string_view> out;
    for (db::TagRef t : entity_.tags) {
        if (t.code() == 1001) out.push_back(t.text());
    }
    return out;
}

}  // namespace korva::editor
