// Geometry of entities at the record level: world extents, transformation,
// explode and copies. KcDbEntity's virtual functions call these, so that each
// entity type's geometry lives in one place whatever class opens it.
#pragma once

#include <memory>
#include <vector>

#include "db/ObjectRecord.h"
#include "geom/Box3d.h"
#include "kcdbents.h"

namespace korva::db {

// World extents of an entity; false for an entity without extent.
bool entityExtents(const ObjectRecord& entity, geom::Box3d& box);

// Applies m to the entity's groups (and its attributes or vertices). False with
// eCannotScaleNonUniformly when the entity type cannot take the transformation.
Kcad::ErrorStatus transformEntity(ObjectRecord& entity, const KcGeMatrix3d& m);

// The entities an entity is made of, new and not resident.
Kcad::ErrorStatus explodeEntity(const ObjectRecord& entity, std::vector<std::unique_ptr<KcDbEntity>>& parts);

}  // namespace korva::db
