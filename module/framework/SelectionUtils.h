// Selection-set helpers: merging sets, collecting object ids, dropping members
// on locked layers, erasing members, and collecting what a host command just
// created; plus a guard that frees a set when the command leaves.
#pragma once

#include "kcadstd.h"
#include "kcdb.h"

// Adds every member of from to to, in index order; the status of the last add
// (RTNORM for an empty set).
int ssaddss(const kcad_name from, const kcad_name to);
// Adds every member of from to the set and highlights each (redraw mode 3). A
// null set ({0, 0}) becomes a new set, named in result. RTNORM.
int kcedSSAddEx(const kcad_name from, const kcad_name set, kcad_name result);
// Appends the id of every member, in index order; the number of members (0 when
// the length cannot be read or the set is empty). Unresolvable members are skipped.
int GetSSObjIds(KcDbObjectIdArray& ids, const kcad_name set);
// Removes from the set, in place, every member that lies on a locked layer.
void filterEntitisInLockedLayer(const kcad_name set);
// Erases every member from the drawing, last index first. RTNORM.
int EmptyEntFromSS(const kcad_name set);
// Adds to set every entity created after last (every entity when last is null or
// {0, 0}). A null set ({0, 0}) becomes a new set when there is something to add. RTNORM.
int GetLastSel(const kcad_name last, kcad_name set);

// Frees a selection set when the scope ends. name() is filled by kcedSSGet and the like.
class SelectionSetGuard {
public:
    SelectionSetGuard() = default;
    ~SelectionSetGuard();
    SelectionSetGuard(const SelectionSetGuard&) = delete;
    SelectionSetGuard& operator=(const SelectionSetGuard&) = delete;
    int64_t* name() { return m_name; }
    const int64_t* name() const { return m_name; }
    bool isNull() const { return m_name[0] == 0 && m_name[1] == 0; }
    // Frees the set now; RTNORM, or the host's status.
    int free();

private:
    kcad_name m_name = {0, 0};
};
