// explodeEntity: the parts an entity is made of, new and not resident. Types
// with no parts to give (lines, circles, texts, ...) answer eNotApplicable.
#include "db/EntityGeometry.h"
#include "db/geometry/ExplodeSupport.h"

namespace korva::db {

Kcad::ErrorStatus explodeEntity(const ObjectRecord& entity, std::vector<std::unique_ptr<KcDbEntity>>& parts) {
    if (entity.erased) return Kcad::eWasErased;
    geometry::Parts made;
    Kcad::ErrorStatus status = Kcad::eNotApplicable;
    switch (entity.type) {
        case Type::Insert: status = geometry::explodeInsert(entity, made); break;
        case Type::Dimension: status = geometry::explodeDimension(entity, made); break;
        case Type::LwPolyline:
        case Type::Polyline: status = geometry::explodePolyline(entity, made); break;
        case Type::MText: status = geometry::explodeMText(entity, made); break;
        default: break;
    }
    if (status != Kcad::eOk) return status;
    for (auto& part : made) parts.push_back(std::move(part));
    return Kcad::eOk;
}

}  // namespace korva::db
