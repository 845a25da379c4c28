// SelectionRules: which entities a selection may take. Interactive selections
// and picks take entities that show (not erased, not invisible, not on a layer
// that is off or frozen) and pass the filter; ":L" selections also refuse
// entities on locked layers. "X" selections ignore layer states.
#pragma once

#include "db/ObjectRecord.h"
#include "editor/selection/EntityFacts.h"
#include "editor/selection/LayerStates.h"
#include "editor/selection/SelectionFilter.h"

namespace korva::editor {

class SelectionRules {
public:
    SelectionRules(const db::Drawing& drawing, const SelectionFilter& filter) : filter_(filter), layers_(drawing) {}

    void setRejectLocked(bool reject) { rejectLocked_ = reject; }
    void setIgnoreLayerStates(bool ignore) { ignoreLayerStates_ = ignore; }

    // Shows on screen (and, with rejectLocked, is not on a locked layer).
    bool visible(const db::ObjectRecord& entity);
    // The same with the entity's common properties already read.
    bool visible(const db::ObjectRecord& entity, const CommonProperties& common);
    // False for an entity on a locked layer when locked layers are refused (":L").
    bool lockAllows(const db::ObjectRecord& entity);
    // The "ALL" option: not erased, not on a frozen layer (nor a locked one with rejectLocked).
    bool takenByAll(const db::ObjectRecord& entity);
    bool passesFilter(const db::ObjectRecord& entity) const { return filter_.matches(entity); }
    bool accepts(const db::ObjectRecord& entity) { return visible(entity) && passesFilter(entity); }
    bool accepts(const db::ObjectRecord& entity, const CommonProperties& common) {
        return visible(entity, common) && passesFilter(entity);
    }

    LayerStates& layers() { return layers_; }
    const SelectionFilter& filter() const { return filter_; }

private:
    const SelectionFilter& filter_;
    LayerStates layers_;
    bool rejectLocked_ = false;
    bool ignoreLayerStates_ = false;
};

}  // namespace korva::editor
