// CommandLoop: the "Command:" prompt. It reads command names (or system
// variable names, or LISP expressions) from the input queue and runs them, an
// empty answer repeating the last command. It also runs commands for
// kcedCommand, and cleans up after every command: a host command it left
// waiting is cancelled and selection sets it did not free are released.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "editor/CommandStack.h"
#include "editor/InputToken.h"

namespace korva::editor {

class CommandFiber;

class CommandLoop {
public:
    static CommandLoop& instance();
    ~CommandLoop();

    // Runs commands until the input ends; false when a script was stopped
    // (an unknown command, an unknown dialog label).
    bool run();
    // Runs one command by its typed name as if typed at the command prompt.
    bool runTyped(std::wstring_view typed);
    void runCommand(const CommandDefinition& command);

    // Stops the script: the rest of the input is dropped and run() returns false.
    void stopScript(const std::wstring& reason);
    bool wasStopped() const { return stopped_; }

    // kcedCommand: feeds a waiting host command, or starts the named one.
    int scripted(std::vector<InputToken> arguments);

    // Called after every command (the selection sets release themselves here).
    void addCommandEndHook(std::function<void()> hook) { endHooks_.push_back(std::move(hook)); }
    const std::wstring& currentCommand() const { return current_; }
    // The flags (kCmdUsePickSet, ...) of the command runCommand is running; 0 at the prompt.
    int32_t currentFlags() const { return flags_; }

private:
    bool handleVariable(std::wstring_view name);
    bool refusedByFlags(const CommandDefinition& command);
    void endCommand();

    std::wstring last_;
    std::wstring current_;
    int32_t flags_ = 0;
    int depth_ = 0;
    bool stopped_ = false;
    std::unique_ptr<CommandFiber> pending_;
    std::vector<std::function<void()>> endHooks_;
};

}  // namespace korva::editor
