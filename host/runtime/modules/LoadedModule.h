// One extension module loaded into the host: the shared object, its entry
// point and optional DllMain, and the state the dynamic linker keeps for it
// (locked, MDI aware, initialised). The object is also the module's HMODULE
// and its application packet: both are opaque host pointers to it.
#pragma once

#include <string>

#include "kcrx.h"
#include "runtime/modules/HostModule.h"

namespace korva::runtime {

class LoadedModule final : public HostModule {
public:
    using EntryPoint = KcRx::AppRetCode (*)(KcRx::AppMsgCode message, void* packet);
    using DllMainFunction = int (*)(void* module, unsigned long reason, void* reserved);

    LoadedModule(std::string path, void* library, EntryPoint entryPoint, DllMainFunction dllMain);
    ~LoadedModule() override;

    void* packet() { return this; }
    // The name used in messages: the file name.
    std::wstring label() const { return fileName(); }

    // Sends a message to the entry point; kRetError when the module's code threw
    // (the exception is reported).
    KcRx::AppRetCode send(KcRx::AppMsgCode message, void* packet);
    // Calls DllMain when the module has one; false when it refused or threw.
    bool callDllMain(unsigned long reason);
    // An exported symbol, or null.
    void* symbol(const char* name) const;
    // Whether a code address lies inside this module.
    bool contains(const void* address) const;
    // Unloads the shared object; nothing of the module may run afterwards.
    void close();

    // An application is locked (not unloadable) until it unlocks itself.
    bool locked = true;
    bool mdiAware = false;
    bool initialized = false;
    bool quitSent = false;
    // Calls into the module's code in progress: a module never unloads under itself.
    int activeCalls = 0;

private:
    void* library_;
    EntryPoint entryPoint_;
    DllMainFunction dllMain_;
    const void* base_ = nullptr;
};

// Counts a call into a module's code for its duration.
class ModuleCallScope {
public:
    explicit ModuleCallScope(LoadedModule* module) : module_(module) {
        if (module_) ++module_->activeCalls;
    }
    ~ModuleCallScope() {
        if (module_) --module_->activeCalls;
    }
    ModuleCallScope(const ModuleCallScope&) = delete;
    ModuleCallScope& operator=(const ModuleCallScope&) = delete;

private:
    LoadedModule* module_;
};

}  // namespace korva::runtime
