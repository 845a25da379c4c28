#include "editor/Editor.h"

#include "editor/lisp/Lisp.h"
#include "editor/selection/SelectionSets.h"

namespace korva::editor {

void initializeEditor() {
    installLispEvaluator();
    installSelectionCleanup();
}

}  // namespace korva::editor
