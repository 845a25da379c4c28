// entityExtents: the world box of one entity record, for every entity type the
// database knows the geometry of.
#include "db/EntityGeometry.h"
#include "db/geometry/ExtentsBuilder.h"

namespace korva::db {

bool entityExtents(const ObjectRecord& entity, geom::Box3d& box) {
    if (entity.erased) return false;
    geom::Box3d found;
    std::vector<const ObjectRecord*> openBlocks;
    geometry::ExtentsBuilder builder(found, KcGeMatrix3d::kIdentity, openBlocks);
    if (!geometry::addEntityExtents(entity, builder) || found.isEmpty()) return false;
    box = found;
    return true;
}

}  // namespace korva::db
