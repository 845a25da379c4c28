// Anonymous blocks built from existing objects, and block references placed
// in the space the user works in.
#include "framework/BlockUtils.h"

#include "framework/CoordUtils.h"
#include "framework/EntityUtils.h"
#include "kced.h"

namespace {

// Whether new references go to model space: TILEMODE not 0 (or unreadable), or a
// model-space viewport active in a layout (CVPORT 2 or more).
bool placesInModelSpace() {
    resbuf tileMode{};
    if (kcedGetVar(L"TILEMODE", &tileMode) != RTNORM || tileMode.resval.rint != 0) return true;
    resbuf viewport{};
    return kcedGetVar(L"CVPORT", &viewport) == RTNORM && viewport.resval.rint >= 2;
}

}  // namespace

Kcad::ErrorStatus defineNewAnonymousBlock(KcDbBlockTableRecord*& record, KcDbObjectId& newId, KcDbDatabase* database) {
    record = nullptr;
    if (!database) return Kcad::eNoDatabase;
    KcDbBlockTable* table = nullptr;
    Kcad::ErrorStatus status = database->getBlockTable(table, KcDb::kForWrite);
    if (status != Kcad::eOk) return status;
    auto* block = new KcDbBlockTableRecord();
    status = block->setPathName(L"");
    if (status == Kcad::eOk) status = block->setName(L"*U");
    if (status == Kcad::eOk) status = table->add(newId, block);
    if (status != Kcad::eOk) {
        delete block;
        table->close();
        return status;
    }
    table->close();
    record = block;
    return Kcad::eOk;
}

Kcad::ErrorStatus cloneAndXformObjects(KcDbDatabase* database, KcDbObjectIdArray& ids, KcDbObjectId owner,
                                       const KcGeMatrix3d& matrix) {
    if (!database) return Kcad::eNoDatabase;
    KcDbIdMapping idMap;
    Kcad::ErrorStatus status = database->deepCloneObjects(ids, owner, idMap);
    if (status != Kcad::eOk) return status;
    KcDbIdMappingIter it(idMap);
    for (it.start(); !it.done(); it.next()) {
        KcDbIdPair pair;
        if (!it.getMap(pair) || !pair.isCloned() || !pair.isPrimary()) continue;
        KcDbEntity* clone = nullptr;
        status = kcdbOpenObject(clone, pair.value(), KcDb::kForWrite);
        if (status != Kcad::eOk) return status;
        status = clone->transformBy(matrix);
        clone->close();
        if (status != Kcad::eOk) return status;
    }
    return Kcad::eOk;
}

Kcad::ErrorStatus makeAnonymousBlock(KcDbObjectId& blockId, KcDbObjectIdArray& ids, const KcGePoint3d& basePoint) {
    KcDbDatabase* database = kcdbHostApplicationServices()->workingDatabase();
    KcDbBlockTableRecord* record = nullptr;
    Kcad::ErrorStatus status = defineNewAnonymousBlock(record, blockId, database);
    if (status != Kcad::eOk) return status;
    record->close();
    KcGePoint3d baseInWorld;
    if (!uc2wc(basePoint, baseInWorld)) return Kcad::eInvalidInput;
    KcGeMatrix3d toBlock;
    getUcsToWcsOriginMatrix(toBlock, baseInWorld, database);
    return cloneAndXformObjects(database, ids, blockId, toBlock);
}

Kcad::ErrorStatus makeBlockReference(KcDbObjectId blockId, const KcGePoint3d& position, double rotation) {
    auto* reference = new KcDbBlockReference();
    Kcad::ErrorStatus status = reference->setBlockTableRecord(blockId);
    if (status == Kcad::eOk) status = reference->setPosition(position);
    if (status == Kcad::eOk) status = reference->setRotation(rotation);
    KcDbObjectId id;
    if (status == Kcad::eOk) status = addEntityToDb(id, reference, placesInModelSpace());
    if (status != Kcad::eOk) {
        delete reference;
        return status;
    }
    reference->close();
    return Kcad::eOk;
}
