// Calls into one loaded module, each behind the exception guard.
#include "runtime/modules/LoadedModule.h"

#include <dlfcn.h>

#include "runtime/modules/ModuleGuard.h"

namespace korva::runtime {

LoadedModule::LoadedModule(std::string path, void* library, EntryPoint entryPoint, DllMainFunction dllMain)
    : HostModule(ModuleKind::Module, std::move(path)), library_(library), entryPoint_(entryPoint), dllMain_(dllMain) {
    Dl_info info{};
    if (::dladdr(reinterpret_cast<const void*>(entryPoint_), &info) != 0) base_ = info.dli_fbase;
}

LoadedModule::~LoadedModule() { close(); }

KcRx::AppRetCode LoadedModule::send(KcRx::AppMsgCode message, void* packet) {
    if (!entryPoint_) return KcRx::kRetError;
    ModuleCallScope scope(this);
    KcRx::AppRetCode result = KcRx::kRetError;
    guardModuleCall(label(), L"its entry point (message " + std::to_wstring(static_cast<int>(message)) + L")",
                    [&] { result = entryPoint_(message, packet); });
    return result;
}

bool LoadedModule::callDllMain(unsigned long reason) {
    if (!dllMain_) return true;
    ModuleCallScope scope(this);
    int result = 0;
    const bool returned = guardModuleCall(label(), L"DllMain", [&] { result = dllMain_(handle(), reason, nullptr); });
    return returned && result != 0;
}

void* LoadedModule::symbol(const char* name) const {
    if (!library_ || !name) return nullptr;
    return ::dlsym(library_, name);
}

bool LoadedModule::contains(const void* address) const {
    Dl_info info{};
    return base_ && address && ::dladdr(address, &info) != 0 && info.dli_fbase == base_;
}

void LoadedModule::close() {
    if (library_) ::dlclose(library_);
    library_ = nullptr;
    entryPoint_ = nullptr;
    dllMain_ = nullptr;
}

}  // namespace korva::runtime
