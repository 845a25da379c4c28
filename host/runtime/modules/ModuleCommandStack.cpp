// Module commands in the editor's command stack, with the owner of each kept
// so that unloading a module takes its commands along.
#include "runtime/modules/ModuleCommandStack.h"

#include <algorithm>
#include <cwctype>

#include "db/RxMacros.h"
#include "editor/CommandStack.h"
#include "runtime/modules/ModuleGuard.h"
#include "runtime/modules/ModuleLoader.h"

KCRX_DEFINE_MEMBERS(KcEdCommandStack, KcRxObject)

// The SDK class only declares the interface; the host's stack overrides it.
Kcad::ErrorStatus KcEdCommandStack::addCommand(const wchar_t*, const wchar_t*, const wchar_t*, Kcad::Int32,
                                               KcRxFunctionPtr, KcEdUIContext*, int, HINSTANCE, KcEdCommand**) {
    return Kcad::eNotImplementedYet;
}
Kcad::ErrorStatus KcEdCommandStack::removeCmd(const wchar_t*, const wchar_t*) { return Kcad::eNotImplementedYet; }
Kcad::ErrorStatus KcEdCommandStack::removeGroup(const wchar_t*) { return Kcad::eNotImplementedYet; }

namespace korva::runtime {

namespace {

struct OwnedCommand {
    std::wstring group;
    std::wstring globalName;
    const LoadedModule* owner;
};

std::vector<OwnedCommand>& ownedCommands() {
    static std::vector<OwnedCommand> commands;
    return commands;
}

bool sameName(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) {
               return std::towupper(static_cast<wint_t>(x)) == std::towupper(static_cast<wint_t>(y));
           });
}

bool isEmpty(const wchar_t* text) { return !text || !*text; }

// The handler as the editor runs it: module code behind the guard, counted as a
// call into the module so that the module cannot be unloaded under it.
std::function<void()> guardedHandler(KcRxFunctionPtr handler, LoadedModule* owner, std::wstring globalName) {
    return [handler, owner, globalName = std::move(globalName)] {
        ModuleCallScope scope(owner);
        guardModuleCall(owner ? owner->label() : std::wstring(L"Command handler"), L"the command " + globalName, handler);
    };
}

}  // namespace

Kcad::ErrorStatus ModuleCommandStack::addCommand(const wchar_t* groupName, const wchar_t* globalName,
                                                 const wchar_t* localName, Kcad::Int32 commandFlags,
                                                 KcRxFunctionPtr handler, KcEdUIContext*, int, HINSTANCE,
                                                 KcEdCommand** commandOut) {
    if (commandOut) *commandOut = nullptr;
    if (isEmpty(groupName) || isEmpty(globalName) || !handler) return Kcad::eInvalidInput;
    LoadedModule* owner = ModuleLoader::instance().containing(reinterpret_cast<const void*>(handler));
    editor::CommandDefinition command;
    command.group = groupName;
    command.globalName = globalName;
    command.localName = localName ? localName : L"";  // the editor gives an empty one the global name
    command.flags = commandFlags;
    command.handler = guardedHandler(handler, owner, globalName);
    const Kcad::ErrorStatus status = editor::CommandStack::instance().add(std::move(command));
    if (status == Kcad::eOk) ownedCommands().push_back({groupName, globalName, owner});
    return status;
}

Kcad::ErrorStatus ModuleCommandStack::removeCmd(const wchar_t* groupName, const wchar_t* globalName) {
    if (isEmpty(groupName) || isEmpty(globalName)) return Kcad::eInvalidInput;
    std::erase_if(ownedCommands(), [&](const OwnedCommand& c) { return sameName(c.group, groupName) && sameName(c.globalName, globalName); });
    return editor::CommandStack::instance().remove(groupName, globalName);
}

Kcad::ErrorStatus ModuleCommandStack::removeGroup(const wchar_t* groupName) {
    if (isEmpty(groupName)) return Kcad::eInvalidInput;
    std::erase_if(ownedCommands(), [&](const OwnedCommand& c) { return sameName(c.group, groupName); });
    return editor::CommandStack::instance().removeGroup(groupName);
}

void forgetCommandsOf(const LoadedModule& module) {
    auto& commands = ownedCommands();
    for (const OwnedCommand& command : commands) {
        if (command.owner == &module) editor::CommandStack::instance().remove(command.group, command.globalName);
    }
    std::erase_if(commands, [&](const OwnedCommand& c) { return c.owner == &module; });
}

}  // namespace korva::runtime
