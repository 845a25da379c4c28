// Selection-set helpers over the host's set functions. Members are visited in
// index order unless a rule says otherwise.
#include "framework/SelectionUtils.h"

#include "kcdbfuncs.h"
#include "kcdbtables.h"
#include "kced.h"

namespace {

bool isNullName(const int64_t* name) { return !name || (name[0] == 0 && name[1] == 0); }

Kcad::Int32 lengthOf(const kcad_name set) {
    Kcad::Int32 length = 0;
    if (isNullName(set) || kcedSSLength(set, &length) != RTNORM) return 0;
    return length;
}

// Whether the entity lies on a locked layer (false when it cannot be opened).
bool isOnLockedLayer(const kcad_name entity) {
    KcDbObjectId id;
    if (kcdbGetObjectId(id, entity) != Kcad::eOk) return false;
    KcDbEntity* object = nullptr;
    if (kcdbOpenObject(object, id, KcDb::kForRead) != Kcad::eOk) return false;
    const KcDbObjectId layerId = object->layerId();
    object->close();
    KcDbLayerTableRecord* layer = nullptr;
    if (kcdbOpenObject(layer, layerId, KcDb::kForRead) != Kcad::eOk) return false;
    const bool locked = layer->isLocked();
    layer->close();
    return locked;
}

// Adds entity to set, a null set becoming the new one.
int addToSet(const kcad_name entity, kcad_name set) {
    kcad_name result = {0, 0};
    const int status = kcedSSAdd(entity, isNullName(set) ? nullptr : set, result);
    if (status == RTNORM && isNullName(set)) {
        set[0] = result[0];
        set[1] = result[1];
    }
    return status;
}

}  // namespace

int ssaddss(const kcad_name from, const kcad_name to) {
    int status = RTNORM;
    const Kcad::Int32 length = lengthOf(from);
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name member = {0, 0};
        if (kcedSSName(from, i, member) != RTNORM) continue;
        kcad_name result = {0, 0};
        status = kcedSSAdd(member, to, result);
    }
    return status;
}

int kcedSSAddEx(const kcad_name from, const kcad_name set, kcad_name result) {
    kcad_name target = {isNullName(set) ? 0 : set[0], isNullName(set) ? 0 : set[1]};
    const Kcad::Int32 length = lengthOf(from);
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name member = {0, 0};
        if (kcedSSName(from, i, member) != RTNORM) continue;
        if (addToSet(member, target) == RTNORM) kcedRedraw(member, 3);
    }
    result[0] = target[0];
    result[1] = target[1];
    return RTNORM;
}

int GetSSObjIds(KcDbObjectIdArray& ids, const kcad_name set) {
    const Kcad::Int32 length = lengthOf(set);
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name member = {0, 0};
        KcDbObjectId id;
        if (kcedSSName(set, i, member) != RTNORM || kcdbGetObjectId(id, member) != Kcad::eOk) continue;
        ids.append(id);
    }
    return length;
}

void filterEntitisInLockedLayer(const kcad_name set) {
    // Collected first, removed afterwards: removing shifts the later members down.
    kcad_name locked = {0, 0};
    const Kcad::Int32 length = lengthOf(set);
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name member = {0, 0};
        if (kcedSSName(set, i, member) == RTNORM && isOnLockedLayer(member)) addToSet(member, locked);
    }
    const Kcad::Int32 lockedCount = lengthOf(locked);
    for (Kcad::Int32 i = 0; i < lockedCount; ++i) {
        kcad_name member = {0, 0};
        if (kcedSSName(locked, i, member) == RTNORM) kcedSSDel(member, set);
    }
    if (!isNullName(locked)) kcedSSFree(locked);
}

int EmptyEntFromSS(const kcad_name set) {
    for (Kcad::Int32 i = lengthOf(set) - 1; i >= 0; --i) {
        kcad_name member = {0, 0};
        if (kcedSSName(set, i, member) == RTNORM) kcdbEntDel(member);
    }
    return RTNORM;
}

int GetLastSel(const kcad_name last, kcad_name set) {
    kcad_name current = {0, 0};
    const bool fromStart = isNullName(last);
    if (!fromStart) {
        current[0] = last[0];
        current[1] = last[1];
    }
    kcad_name next = {0, 0};
    while (kcdbEntNext(fromStart && isNullName(current) ? nullptr : current, next) == RTNORM) {
        addToSet(next, set);
        current[0] = next[0];
        current[1] = next[1];
    }
    return RTNORM;
}

SelectionSetGuard::~SelectionSetGuard() { free(); }

int SelectionSetGuard::free() {
    if (isNull()) return RTNORM;
    const int status = kcedSSFree(m_name);
    m_name[0] = m_name[1] = 0;
    return status;
}
