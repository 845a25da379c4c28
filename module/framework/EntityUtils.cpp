// Entity extents and appending new entities to a space of the working database.
#include "framework/EntityUtils.h"

#include "kcdbfuncs.h"

namespace {

Kcad::ErrorStatus appendToBlock(KcDbObjectId& id, KcDbEntity* entity, KcDbObjectId blockId) {
    if (!entity) return Kcad::eNullEntityPointer;
    KcDbBlockTableRecord* block = nullptr;
    Kcad::ErrorStatus status = kcdbOpenObject(block, blockId, KcDb::kForWrite);
    if (status != Kcad::eOk) return status;
    status = block->appendKcDbEntity(id, entity);
    block->close();
    return status;
}

KcDbDatabase* workingDatabase() {
    KcDbHostApplicationServices* services = kcdbHostApplicationServices();
    return services ? services->workingDatabase() : nullptr;
}

}  // namespace

Kcad::ErrorStatus getEntityExtents(const KcDbEntity* entity, KcDbExtents& extents) {
    if (!entity) return Kcad::eNullEntityPointer;
    return entity->getGeomExtents(extents);
}

Kcad::ErrorStatus getEntityExtents(KcDbObjectId id, KcDbExtents& extents) {
    KcDbEntity* entity = nullptr;
    Kcad::ErrorStatus status = kcdbOpenObject(entity, id, KcDb::kForRead);
    if (status != Kcad::eOk) return status;
    status = entity->getGeomExtents(extents);
    entity->close();
    return status;
}

Kcad::ErrorStatus getEntityExtents(const kcad_name entity, KcDbExtents& extents) {
    KcDbObjectId id;
    const Kcad::ErrorStatus status = kcdbGetObjectId(id, entity);
    return status == Kcad::eOk ? getEntityExtents(id, extents) : status;
}

Kcad::ErrorStatus addEntityToDb(KcDbObjectId& id, KcDbEntity* entity, bool toModelSpace) {
    KcDbDatabase* database = workingDatabase();
    if (!database) return Kcad::eNoDatabase;
    return appendToBlock(id, entity, toModelSpace ? database->modelSpaceId() : database->paperSpaceId());
}

Kcad::ErrorStatus addEntityToCurrentSpace(KcDbObjectId& id, KcDbEntity* entity) {
    KcDbDatabase* database = workingDatabase();
    if (!database) return Kcad::eNoDatabase;
    return appendToBlock(id, entity, database->currentSpaceId());
}
