// Start-up of the editor: installs the LISP evaluator of scripts and the
// clean-up that runs after every command.
#pragma once

namespace korva::editor {

void initializeEditor();

}  // namespace korva::editor
