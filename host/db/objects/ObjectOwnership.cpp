// Owner links of objects.
#include "db/objects/ObjectOwnership.h"

#include <algorithm>

#include "db/RecordTags.h"
#include "db/tables/ResidentRecords.h"

namespace korva::db {

namespace {
constexpr std::string_view kReactors = "{ACAD_REACTORS";
}

void attachToOwner(ObjectRecord& object, ObjectRecord& owner) {
    linkToOwner(object, &owner);
    std::vector<Handle> reactors = applicationGroupHandles(object, kReactors);
    if (std::find(reactors.begin(), reactors.end(), owner.handle) == reactors.end()) {
        reactors.insert(reactors.begin(), owner.handle);
        writeApplicationGroup(object, kReactors, 330, reactors);
    }
}

void detachFromOwner(ObjectRecord& object, const ObjectRecord& formerOwner) {
    if (object.owner != &formerOwner) return;
    linkToOwner(object, nullptr);
    std::vector<Handle> reactors = applicationGroupHandles(object, kReactors);
    if (std::erase(reactors, formerOwner.handle) > 0) writeApplicationGroup(object, kReactors, 330, reactors);
}

}  // namespace korva::db
