// Selection for editing commands.
#include "commands/edit/EditSelection.h"

#include <string>

#include "db/ObjectAccess.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

int selectObjects(std::vector<KcDbObjectId>& ids, bool leaveLockedOut) {
    ids.clear();
    kcad_name set = {0, 0};
    const int status = kcedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    if (status == RTCAN) return RTCAN;
    if (status != RTNORM) return RTNONE;
    Kcad::Int32 length = 0;
    kcedSSLength(set, &length);
    int locked = 0;
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name name = {0, 0};
        KcDbObjectId id;
        if (kcedSSName(set, i, name) != RTNORM || kcdbGetObjectId(id, name) != Kcad::eOk || id.isErased()) continue;
        const db::ObjectRecord* record = db::ObjectAccess::record(id);
        if (!record || !record->isEntity()) continue;
        if (leaveLockedOut && db::isOnLockedLayer(*record)) {
            ++locked;
            continue;
        }
        ids.push_back(id);
    }
    kcedSSFree(set);
    if (locked == 1) kcutPrintf(L"\n1 was on a locked layer.");
    if (locked > 1) kcutPrintf(L"\n%d were on a locked layer.", locked);
    return ids.empty() ? RTNONE : RTNORM;
}

}  // namespace

int selectObjectsToEdit(std::vector<KcDbObjectId>& ids) { return selectObjects(ids, true); }

int selectObjectsToRead(std::vector<KcDbObjectId>& ids) { return selectObjects(ids, false); }

}  // namespace korva::commands
