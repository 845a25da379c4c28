// The Win32-style module functions: finding a loaded module by name, its path
// and its exports. Handles are checked against the module registry.
#include <algorithm>

#include "db/Utf8.h"
#include "kcwindows.h"
#include "runtime/modules/LoadedModule.h"

using korva::runtime::HostModule;
using korva::runtime::ModuleKind;
using korva::runtime::ModuleRegistry;

HMODULE GetModuleHandleW(LPCWSTR moduleName) {
    ModuleRegistry& registry = ModuleRegistry::instance();
    if (!moduleName) return registry.hostProgram().handle();
    const HostModule* module = registry.findByName(moduleName);
    return module ? module->handle() : nullptr;
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size) {
    ModuleRegistry& registry = ModuleRegistry::instance();
    const HostModule* found = module ? registry.find(module) : &registry.hostProgram();
    if (!found || !buffer || size == 0) return 0;
    const std::wstring path = korva::db::utf8ToWide(found->path());
    // As on Windows: a path that does not fit is cut, and the result is then the buffer size.
    const size_t copied = std::min<size_t>(path.size(), size - 1);
    path.copy(buffer, copied);
    buffer[copied] = L'\0';
    return copied < path.size() ? size : static_cast<DWORD>(copied);
}

FARPROC GetProcAddress(HMODULE module, LPCSTR exportName) {
    const HostModule* found = ModuleRegistry::instance().find(module);
    if (!found || !exportName || found->kind() != ModuleKind::Module) return nullptr;
    return reinterpret_cast<FARPROC>(static_cast<const korva::runtime::LoadedModule*>(found)->symbol(exportName));
}
