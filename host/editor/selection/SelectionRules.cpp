// Visibility of a top-level entity for selection.
#include "editor/selection/SelectionRules.h"

#include "editor/selection/EntityFacts.h"

namespace korva::editor {

bool SelectionRules::visible(const db::ObjectRecord& entity) {
    if (entity.erased || !entity.isEntity()) return false;
    if (ignoreLayerStates_) return true;
    return visible(entity, commonProperties(entity));
}

bool SelectionRules::visible(const db::ObjectRecord& entity, const CommonProperties& common) {
    if (entity.erased || !entity.isEntity()) return false;
    if (ignoreLayerStates_) return true;
    if (common.invisible) return false;
    const LayerState state = layers_.of(common.layer);
    return !state.hidden() && !(rejectLocked_ && state.locked);
}

bool SelectionRules::lockAllows(const db::ObjectRecord& entity) {
    return !rejectLocked_ || !layers_.of(commonProperties(entity).layer).locked;
}

bool SelectionRules::takenByAll(const db::ObjectRecord& entity) {
    if (entity.erased || !entity.isEntity()) return false;
    const LayerState state = layers_.of(commonProperties(entity).layer);
    return !state.frozen && !(rejectLocked_ && state.locked);
}

}  // namespace korva::editor
