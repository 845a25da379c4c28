// KcDbBlockReference::explodeToOwnerSpace: explodes a resident reference and
// appends the parts to the block record that holds the reference, with fresh
// handles and owner tags; the parts keep their own layers and colours, and the
// reference itself stays.
#include "db/EntityGeometry.h"
#include "db/ObjectAccess.h"
#include "db/tables/BlockAppend.h"
#include "kcdbents.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
namespace db = korva::db;

Kcad::ErrorStatus KcDbBlockReference::explodeToOwnerSpace() const {
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    const ObjectRecord& self = record();
    if (self.erased) return Kcad::eWasErased;
    ObjectRecord* owner = self.owner;
    if (!self.drawing || !owner || owner->type != db::Type::BlockRecord) return Kcad::eNotInDatabase;

    std::vector<std::unique_ptr<KcDbEntity>> parts;
    if (Kcad::ErrorStatus status = db::explodeEntity(self, parts); status != Kcad::eOk) return status;
    for (std::unique_ptr<KcDbEntity>& part : parts) {
        db::appendNewEntity(*owner, *part);
        part.release()->close();
    }
    return Kcad::eOk;
}
