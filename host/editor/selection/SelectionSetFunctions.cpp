// The SDK's selection-set functions. None throws; bad names give RTERROR and
// change nothing.
#include <exception>

#include "db/ResultBuffers.h"
#include "editor/Document.h"
#include "editor/selection/InteractiveSelection.h"
#include "editor/selection/PickFirst.h"
#include "editor/selection/SelectionModes.h"
#include "editor/selection/SelectionSets.h"
#include "kced.h"

using namespace korva::editor;
using korva::db::ObjectRecord;

namespace {

// A live entity of a live drawing.
ObjectRecord* entityOf(const kcad_name name) {
    if (!name) return nullptr;
    ObjectRecord* record = MemberName::of(name).record();
    return record && record->isEntity() && !record->erased ? record : nullptr;
}

bool isNull(const kcad_name name) { return !name || (name[0] == 0 && name[1] == 0); }

std::vector<MemberName> namesOf(const std::vector<ObjectRecord*>& records) {
    std::vector<MemberName> names;
    names.reserve(records.size());
    for (const ObjectRecord* record : records) names.push_back(MemberName::of(record));
    return names;
}

}  // namespace

int kcedSSGet(const wchar_t* mode, const void* arg1, const void* arg2, const resbuf* filter, kcad_name selectionSet) {
    if (!selectionSet) return RTERROR;
    try {
        const auto parsed = parseSelectionMode(mode);
        if (!parsed) return RTERROR;
        std::vector<ObjectRecord*> result;
        const int status = runSelection(*parsed, arg1, arg2, filter, result);
        if (status != RTNORM) return status;
        kcad_name name;
        SelectionSet* set = SelectionSets::instance().create(name);
        if (!set) return RTERROR;
        set->assignDistinct(namesOf(result));
        if (Document* document = Session::instance().current()) document->previousSelection() = std::move(result);
        selectionSet[0] = name[0];
        selectionSet[1] = name[1];
        return RTNORM;
    } catch (const std::exception&) {
        return RTERROR;
    }
}

int kcedSSLength(const kcad_name set, Kcad::Int32* length) {
    const SelectionSet* found = SelectionSets::instance().find(set);
    if (!found || !length) return RTERROR;
    *length = static_cast<Kcad::Int32>(found->size());
    return RTNORM;
}

int kcedSSName(const kcad_name set, Kcad::Int32 index, kcad_name entity) {
    const SelectionSet* found = SelectionSets::instance().find(set);
    if (!found || !entity || index < 0 || static_cast<size_t>(index) >= found->size()) return RTERROR;
    found->at(static_cast<size_t>(index)).store(entity);
    return RTNORM;
}

int kcedSSAdd(const kcad_name entity, const kcad_name set, kcad_name result) {
    try {
        SelectionSets& sets = SelectionSets::instance();
        ObjectRecord* record = nullptr;
        if (!isNull(entity)) {
            record = entityOf(entity);
            if (!record) return RTERROR;
        }
        if (!isNull(set)) {
            SelectionSet* found = sets.find(set);
            if (!found || !record) return RTERROR;
            found->add(MemberName::of(record));
            if (result) {
                result[0] = set[0];
                result[1] = set[1];
            }
            return RTNORM;
        }
        if (!result) return RTERROR;
        kcad_name name;
        SelectionSet* created = sets.create(name);
        if (!created) return RTERROR;
        if (record) created->add(MemberName::of(record));
        result[0] = name[0];
        result[1] = name[1];
        return RTNORM;
    } catch (const std::exception&) {
        return RTERROR;
    }
}

int kcedSSDel(const kcad_name entity, const kcad_name set) {
    SelectionSet* found = SelectionSets::instance().find(set);
    if (!found || isNull(entity)) return RTERROR;
    return found->remove(MemberName::of(entity)) ? RTNORM : RTERROR;
}

int kcedSSMemb(const kcad_name entity, const kcad_name set) {
    const SelectionSet* found = SelectionSets::instance().find(set);
    if (!found || isNull(entity)) return RTERROR;
    return found->contains(MemberName::of(entity)) ? RTNORM : RTERROR;
}

int kcedSSFree(const kcad_name set) { return SelectionSets::instance().release(set) ? RTNORM : RTERROR; }

int kcedSSSetFirst(const kcad_name pickFirstSet, const kcad_name /*unused*/) {
    if (isNull(pickFirstSet)) {
        clearPickFirst();
        return RTNORM;
    }
    const SelectionSet* found = SelectionSets::instance().find(pickFirstSet);
    if (!found) return RTERROR;
    Document* document = Session::instance().current();
    if (!document) return RTERROR;
    std::vector<ObjectRecord*> entities;
    for (ObjectRecord* record : found->records()) {
        if (record->isEntity() && !record->erased && record->drawing == &document->drawing()) entities.push_back(record);
    }
    setPickFirst(entities);
    return RTNORM;
}

int kcedSSGetFirst(resbuf** gripSet, resbuf** pickFirstSet) {
    try {
        if (gripSet) *gripSet = nullptr;  // the host keeps no grips apart from the pick-first set
        if (!pickFirstSet) return RTNORM;
        *pickFirstSet = nullptr;
        const std::vector<ObjectRecord*> entities = pickFirstEntities();
        if (entities.empty()) return RTNORM;
        kcad_name name;
        SelectionSet* set = SelectionSets::instance().create(name);
        if (!set) return RTERROR;
        set->assignDistinct(namesOf(entities));
        resbuf* item = korva::db::newResbuf(RTPICKS);
        if (!item) {
            SelectionSets::instance().release(name);
            return RTERROR;
        }
        item->resval.rlname[0] = name[0];
        item->resval.rlname[1] = name[1];
        *pickFirstSet = item;
        return RTNORM;
    } catch (const std::exception&) {
        return RTERROR;
    }
}

int kcedSSSetKwordCallbackPtr(KcEdSSKwordCallback callback) {
    selectionKeywordCallback() = callback;
    return RTNORM;
}

int kcedSSGetKwordCallbackPtr(KcEdSSKwordCallback* callback) {
    if (!callback) return RTERROR;
    *callback = selectionKeywordCallback();
    return RTNORM;
}
