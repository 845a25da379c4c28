// The command stack modules see ("KCAD_REGISTERED_COMMANDS"): KcEdCommandStack
// over the editor's command stack. A module's handler runs behind the
// exception guard, and the commands a module registered go with it when it is
// unloaded, so that no command is left pointing into a closed module.
#pragma once

#include <string>
#include <vector>

#include "kcedcommands.h"

namespace korva::runtime {

class LoadedModule;

class ModuleCommandStack final : public KcEdCommandStack {
public:
    ModuleCommandStack() = default;

    Kcad::ErrorStatus addCommand(const wchar_t* groupName, const wchar_t* globalName, const wchar_t* localName,
                                 Kcad::Int32 commandFlags, KcRxFunctionPtr handler, KcEdUIContext* uiContext = nullptr,
                                 int functionCode = -1, HINSTANCE resourceHandle = nullptr,
                                 KcEdCommand** commandOut = nullptr) override;
    Kcad::ErrorStatus removeCmd(const wchar_t* groupName, const wchar_t* globalName) override;
    Kcad::ErrorStatus removeGroup(const wchar_t* groupName) override;
};

// Removes the commands whose handlers live in the module (it is being unloaded).
void forgetCommandsOf(const LoadedModule& module);

}  // namespace korva::runtime
