// EXPLODE: block references, polylines, multiline texts and dimensions break
// into their parts, which join the block record that held the object (model
// space, a layout or a block definition); the object is then erased. A block
// reference gives copies of its block's entities, nested references staying
// references, and its attributes give way to the definitions the block holds.
// What cannot be exploded is counted on the command line.
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/edit/EditSelection.h"
#include "editor/CommandStack.h"
#include "kcdbents.h"
#include "kcut.h"

namespace korva::commands {

namespace {

Kcad::ErrorStatus explodeIntoOwner(KcDbEntity& entity) {
    if (auto* reference = KcDbBlockReference::cast(&entity)) return reference->explodeToOwnerSpace();
    KcDbVoidPtrArray parts;
    const Kcad::ErrorStatus status = entity.explode(parts);
    if (status != Kcad::eOk) return status;
    const KcDbObjectId block = entity.blockId();
    for (int i = 0; i < parts.length(); ++i) appendToBlock(block, static_cast<KcDbEntity*>(parts[i]));
    return Kcad::eOk;
}

void explodeCommand() {
    std::vector<KcDbObjectId> ids;
    if (selectObjectsToEdit(ids) != RTNORM) return;
    int failed = 0;
    for (KcDbObjectId id : ids) {
        KcDbEntity* entity = nullptr;
        if (kcdbOpenObject(entity, id, KcDb::kForWrite) != Kcad::eOk) {
            ++failed;
            continue;
        }
        if (explodeIntoOwner(*entity) == Kcad::eOk) entity->erase();
        else ++failed;
        entity->close();
    }
    if (failed == 1) kcutPrintf(L"\n1 was not able to be exploded.");
    if (failed > 1) kcutPrintf(L"\n%d were not able to be exploded.", failed);
}

}  // namespace

void registerExplodeCommand() { addBuiltInCommand(L"EXPLODE", explodeCommand, editor::kCmdUsePickSet); }

}  // namespace korva::commands
