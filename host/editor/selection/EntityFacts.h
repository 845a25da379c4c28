// What a selection filter asks of one entity: its type name, layer and colour
// (read straight from its tags, since "X" selections test every entity of a
// drawing), the values of any other group from its data list (built only when a
// filter asks for such a group), its application groups and the applications
// of its extended data.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"
#include "db/Tag.h"

namespace korva::editor {

// The common properties of an entity, read in one walk over the start of its tags.
struct CommonProperties {
    std::string_view layer = "0";
    int colour = 256;        // 62; BYLAYER when absent
    bool invisible = false;  // 60 = 1
};
CommonProperties commonProperties(const db::ObjectRecord& entity);

class EntityFacts {
public:
    explicit EntityFacts(const db::ObjectRecord& entity) : entity_(entity) {}

    const db::ObjectRecord& entity() const { return entity_; }
    std::string_view typeName() const;
    const CommonProperties& common();

    // Every value of a group as the data list gives it (angles in radians, points in
    // world coordinates, references as handles), with the host defaults of common
    // groups the list leaves out (62 = 256, 6 = "BYLAYER", ...).
    std::vector<db::Tag> values(int code);
    // The texts of a string group straight from the tags; nothing when the tags
    // lack the group (its default then comes from the data list).
    std::optional<std::vector<std::string_view>> storedTexts(int code) const;

    // The opening texts of the 102 groups ("{ACAD_REACTORS", ...).
    std::vector<std::string_view> applicationGroups() const;
    // The applications of its extended data (1001 names).
    std::vector<std::string_view> extendedDataApplications() const;

private:
    const std::vector<db::Tag>& list();

    const db::ObjectRecord& entity_;
    std::optional<CommonProperties> common_;
    std::optional<std::vector<db::Tag>> list_;
};

}  // namespace korva::editor
