// Layer states from the LAYER records: a negative colour is off, 70 bit 1
// frozen, 70 bit 4 locked. A layer without a record is shown and unlocked.
#include "editor/selection/LayerStates.h"

#include "db/RecordFields.h"

namespace korva::editor {

LayerState LayerStates::of(std::string_view layer) {
    if (auto known = known_.find(layer); known != known_.end()) return known->second;
    LayerState state;
    if (const db::ObjectRecord* record = drawing_.tableRecord("LAYER", layer)) {
        const int64_t flags = db::fieldInteger(*record, {}, 70, 0);
        state.off = db::fieldInteger(*record, {}, 62, 7) < 0;
        state.frozen = (flags & 1) != 0;
        state.locked = (flags & 4) != 0;
    }
    known_.emplace(std::string(layer), state);
    return state;
}

}  // namespace korva::editor
