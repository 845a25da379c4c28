// Saving, silencing and restoring the variables BURST changes.
#include "blocks/BurstVariables.h"

#include "kced.h"

BurstVariables::BurstVariables()
    : m_saved{{{L"CMDECHO", {}, false}, {L"BLIPMODE", {}, false}, {L"EXPERT", {}, false}}} {
    for (Saved& saved : m_saved) {
        saved.read = kcedGetVar(saved.name, &saved.value) == RTNORM && saved.value.restype == RTSHORT;
        if (!saved.read) continue;  // a variable the host does not know is left alone
        resbuf silenced = saved.value;
        silenced.rbnext = nullptr;
        silenced.resval.rint = 0;
        if (kcedSetVar(saved.name, &silenced) != RTNORM) saved.read = false;  // unchanged: nothing to restore
    }
}

BurstVariables::~BurstVariables() {
    if (!m_restore) return;
    // Reverse order of saving, as the shared guards restore.
    for (auto it = m_saved.rbegin(); it != m_saved.rend(); ++it) {
        if (!it->read) continue;
        resbuf value = it->value;
        value.rbnext = nullptr;
        if (kcedSetVar(it->name, &value) != RTNORM) continue;  // nothing more a destructor can do
    }
}
