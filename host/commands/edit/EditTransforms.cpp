// Transforming the selected objects in place or as copies.
#include "commands/edit/EditTransforms.h"

#include "commands/draw/DrawingPlacement.h"
#include "kcut.h"

namespace korva::commands {

namespace {

void reportFailures(int failed) {
    if (failed == 1) kcutPrintf(L"\n1 object could not be transformed.");
    if (failed > 1) kcutPrintf(L"\n%d objects could not be transformed.", failed);
}

}  // namespace

std::vector<KcDbObjectId> transformObjects(const std::vector<KcDbObjectId>& ids, const KcGeMatrix3d& m) {
    std::vector<KcDbObjectId> results;
    int failed = 0;
    for (KcDbObjectId id : ids) {
        KcDbEntity* entity = nullptr;
        Kcad::ErrorStatus status = kcdbOpenObject(entity, id, KcDb::kForWrite);
        if (status == Kcad::eOk) {
            status = entity->transformBy(m);
            entity->close();
        }
        results.push_back(status == Kcad::eOk ? id : KcDbObjectId::kNull);
        failed += status == Kcad::eOk ? 0 : 1;
    }
    reportFailures(failed);
    return results;
}

std::vector<KcDbObjectId> copyObjects(const std::vector<KcDbObjectId>& ids, const KcGeMatrix3d& m) {
    std::vector<KcDbObjectId> results;
    int failed = 0;
    for (KcDbObjectId id : ids) {
        KcDbEntity* entity = nullptr;
        KcDbEntity* copy = nullptr;
        KcDbObjectId block;
        if (kcdbOpenObject(entity, id, KcDb::kForRead) == Kcad::eOk) {
            block = entity->blockId();
            if (entity->getTransformedCopy(m, copy) != Kcad::eOk) copy = nullptr;
            entity->close();
        }
        const KcDbObjectId added = copy ? appendToBlock(block, copy) : KcDbObjectId::kNull;
        results.push_back(added);
        failed += added.isNull() ? 1 : 0;
    }
    reportFailures(failed);
    return results;
}

KcGeMatrix3d displacementBetween(const kcad_point from, const kcad_point to) {
    const UcsPlane ucs = UcsPlane::current();
    return KcGeMatrix3d::translation(ucs.toWorld(to) - ucs.toWorld(from));
}

}  // namespace korva::commands
