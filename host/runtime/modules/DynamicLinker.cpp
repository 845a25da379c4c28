// The dynamic linker over the module loader, and the MDI-aware declaration.
#include "runtime/modules/DynamicLinker.h"

#include "db/Utf8.h"
#include "editor/CommandLine.h"
#include "runtime/files/NativePath.h"
#include "runtime/modules/ModuleLoader.h"
#include "runtime/modules/ModuleSearch.h"

namespace korva::runtime {

// The calling module is found from the return address: never inline this.
__attribute__((noinline)) bool DynamicLinker::loadModule(const wchar_t* fileName, bool printIt, bool) {
    const void* caller = __builtin_return_address(0);
    if (!fileName || !*fileName) return false;
    std::string error;
    const LoadedModule* module = ModuleLoader::instance().load(nativePath(fileName), folderOfAddress(caller), error);
    if (!module && printIt) editor::CommandLine::instance().print(L"\n" + db::utf8ToWide(error) + L"\n");
    return module != nullptr;
}

bool DynamicLinker::unloadModule(const wchar_t* fileName, bool) {
    if (!fileName || !*fileName) return false;
    LoadedModule* module = ModuleLoader::instance().find(fileName);
    return module && ModuleLoader::instance().unload(*module);
}

bool DynamicLinker::lockApplication(void* appPacket) const {
    LoadedModule* module = ModuleLoader::instance().fromPacket(appPacket);
    if (!module) return false;
    module->locked = true;
    return true;
}

bool DynamicLinker::unlockApplication(void* appPacket) const {
    LoadedModule* module = ModuleLoader::instance().fromPacket(appPacket);
    if (!module) return false;
    module->locked = false;
    return true;
}

bool DynamicLinker::isApplicationLocked(const wchar_t* fileName) const {
    const LoadedModule* module = fileName ? ModuleLoader::instance().find(fileName) : nullptr;
    return module && module->locked;
}

}  // namespace korva::runtime

Kcad::ErrorStatus kcrxRegisterAppMDIAware(void* appPacket) {
    korva::runtime::LoadedModule* module = korva::runtime::ModuleLoader::instance().fromPacket(appPacket);
    if (!module) return Kcad::eInvalidInput;
    module->mdiAware = true;
    return Kcad::eOk;
}
