// The command stack: groups of commands, each with a global and a local name,
// flags and a handler. Typed names are looked up without regard to case; "_"
// asks for the global name and "." for the host's built-in definition ("_."
// both); "-" is part of a name ("-LAYER").
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "kcadstd.h"

namespace korva::editor {

// Command flags of addCommand.
constexpr int32_t kCmdUsePickSet = 0x2;
constexpr int32_t kCmdRedraw = 0x4;
constexpr int32_t kCmdNoPerspective = 0x8;
constexpr int32_t kCmdNoTileMode = 0x20;
constexpr int32_t kCmdNoBlockEditor = 0x2000000;

struct CommandDefinition {
    std::wstring group;
    std::wstring globalName;
    std::wstring localName;
    int32_t flags = 0;
    std::function<void()> handler;
    bool builtIn = false;  // a command of the host itself
};

class CommandStack {
public:
    static CommandStack& instance();

    // eDuplicateKey when the group already has the global name (the first stays).
    Kcad::ErrorStatus add(CommandDefinition command);
    Kcad::ErrorStatus removeGroup(std::wstring_view group);
    // Removes one command of a group; eKeyNotFound when the group does not have it.
    Kcad::ErrorStatus remove(std::wstring_view group, std::wstring_view globalName);
    // The command a typed name asks for, or null.
    const CommandDefinition* find(std::wstring_view typed) const;
    bool hasGroup(std::wstring_view group) const;
    const std::vector<CommandDefinition>& commands() const { return commands_; }

private:
    std::vector<CommandDefinition> commands_;
};

}  // namespace korva::editor
