// The Win32-style resource functions modules call: locating and loading the
// localized resource library, its strings, releasing it, and the current
// resource handle.
#include <algorithm>

#include "kcmfc.h"
#include "kcwindows.h"
#include "runtime/documents/DocumentManager.h"
#include "runtime/files/NativePath.h"
#include "runtime/modules/ModuleSearch.h"
#include "runtime/resources/ResourceLibrary.h"
#include "runtime/resources/ResourceSearch.h"

using korva::runtime::ModuleRegistry;
using korva::runtime::ResourceLibrary;

// The library is looked for beside the caller, found from the return address:
// never inline this.
__attribute__((noinline)) HINSTANCE loadResourceDll(const wchar_t* libraryName) {
    const void* caller = __builtin_return_address(0);
    if (!libraryName || !*libraryName) return nullptr;
    const std::string name = korva::runtime::nativePath(libraryName);
    for (const std::string& candidate : korva::runtime::resourceCandidates(name, korva::runtime::folderOfAddress(caller))) {
        if (ResourceLibrary* library = korva::runtime::loadResourceLibrary(candidate)) return library->handle();
    }
    return nullptr;
}

int LoadStringW(HINSTANCE instance, UINT id, LPWSTR buffer, int bufferMax) {
    // bufferMax 0 asks for a read-only pointer into the resource: not offered here.
    if (!buffer || bufferMax <= 0) return 0;
    buffer[0] = L'\0';
    const korva::runtime::HostModule* module = ModuleRegistry::instance().find(instance);
    if (!module || module->kind() != korva::runtime::ModuleKind::ResourceLibrary) return 0;
    const auto text = static_cast<const ResourceLibrary*>(module)->strings().find(id);
    if (!text) return 0;
    const size_t copied = std::min(text->size(), static_cast<size_t>(bufferMax - 1));
    text->copy(buffer, copied);
    buffer[copied] = L'\0';
    return static_cast<int>(copied);
}

BOOL FreeLibrary(HMODULE module) { return korva::runtime::releaseResourceLibrary(module) ? TRUE : FALSE; }

HINSTANCE AfxGetResourceHandle() {
    if (HINSTANCE top = korva::runtime::topResourceHandle()) return top;
    return ModuleRegistry::instance().hostProgram().handle();
}
