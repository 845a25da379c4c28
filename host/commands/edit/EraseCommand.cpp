// ERASE: erases the selected objects (those on locked layers stay).
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/edit/EditSelection.h"
#include "editor/CommandStack.h"
#include "kcdbents.h"

namespace korva::commands {

namespace {

void eraseCommand() {
    std::vector<KcDbObjectId> ids;
    if (selectObjectsToEdit(ids) != RTNORM) return;
    for (KcDbObjectId id : ids) {
        KcDbEntity* entity = nullptr;
        if (kcdbOpenObject(entity, id, KcDb::kForWrite) != Kcad::eOk) continue;
        entity->erase();
        entity->close();
    }
}

}  // namespace

void registerEraseCommand() { addBuiltInCommand(L"ERASE", eraseCommand, editor::kCmdUsePickSet); }

}  // namespace korva::commands
