// Host commands join the command stack as built-in commands, so that "." reaches
// them even when a module redefines the name.
#include "commands/BuiltInCommand.h"

#include "editor/CommandStack.h"

namespace korva::commands {

void addBuiltInCommand(const wchar_t* name, std::function<void()> handler, int32_t flags) {
    editor::CommandDefinition command;
    command.group = kHostCommandGroup;
    command.globalName = name;
    command.localName = name;
    command.flags = flags;
    command.handler = std::move(handler);
    command.builtIn = true;
    (void)editor::CommandStack::instance().add(std::move(command));
}

}  // namespace korva::commands
