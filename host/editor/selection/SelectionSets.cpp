// Placeholder until selection sets land.
#include "editor/selection/SelectionSets.h"

namespace korva::editor {

void installSelectionCleanup() {}

}  // namespace korva::editor
