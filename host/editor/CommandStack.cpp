#include "editor/CommandStack.h"

#include <algorithm>
#include <cwctype>

namespace korva::editor {

namespace {

bool sameName(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) {
               return std::towupper(static_cast<wint_t>(x)) == std::towupper(static_cast<wint_t>(y));
           });
}

}  // namespace

CommandStack& CommandStack::instance() {
    static CommandStack stack;
    return stack;
}

Kcad::ErrorStatus CommandStack::add(CommandDefinition command) {
    for (const CommandDefinition& existing : commands_) {
        if (sameName(existing.group, command.group) && sameName(existing.globalName, command.globalName)) {
            return Kcad::eDuplicateKey;
        }
    }
    // A missing local name (an unloaded resource) falls back to the global name.
    if (command.localName.empty()) command.localName = command.globalName;
    commands_.push_back(std::move(command));
    return Kcad::eOk;
}

Kcad::ErrorStatus CommandStack::removeGroup(std::wstring_view group) {
    const size_t before = commands_.size();
    std::erase_if(commands_, [&](const CommandDefinition& c) { return sameName(c.group, group); });
    return commands_.size() == before ? Kcad::eKeyNotFound : Kcad::eOk;
}

Kcad::ErrorStatus CommandStack::remove(std::wstring_view group, std::wstring_view globalName) {
    const size_t before = commands_.size();
    std::erase_if(commands_, [&](const CommandDefinition& c) { return sameName(c.group, group) && sameName(c.globalName, globalName); });
    return commands_.size() == before ? Kcad::eKeyNotFound : Kcad::eOk;
}

bool CommandStack::hasGroup(std::wstring_view group) const {
    return std::any_of(commands_.begin(), commands_.end(), [&](const CommandDefinition& c) { return sameName(c.group, group); });
}

const CommandDefinition* CommandStack::find(std::wstring_view typed) const {
    bool global = false;
    bool builtIn = false;
    while (!typed.empty() && (typed.front() == L'_' || typed.front() == L'.')) {
        (typed.front() == L'_' ? global : builtIn) = true;
        typed.remove_prefix(1);
    }
    if (typed.empty()) return nullptr;
    // Commands registered later take precedence over earlier ones and over the host's.
    const CommandDefinition* fallback = nullptr;
    for (auto it = commands_.rbegin(); it != commands_.rend(); ++it) {
        if (builtIn && !it->builtIn) continue;
        if (sameName(global ? it->globalName : it->localName, typed)) {
            if (!it->builtIn) return &*it;
            if (!fallback) fallback = &*it;
        } else if (!global && !fallback && sameName(it->globalName, typed)) {
            fallback = &*it;
        }
    }
    return fallback;
}

}  // namespace korva::editor
