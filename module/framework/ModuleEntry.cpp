// Entry-point dispatch, registration and unregistration. Codes 10 and 11
// compare their argument with a stored service reference that nothing ever
// sets, and use a stored module handle that is never set either: both are
// kept as they are.
#include "framework/ModuleEntry.h"

#include "framework/CommandTable.h"
#include "framework/LispFunctions.h"
#include "framework/ModuleResources.h"
#include "kcedcommands.h"

namespace {

void* storedServiceReference = nullptr;
void* storedModuleHandle = nullptr;

KcRxDynamicLinker* dynamicLinker() {
    KcRxDictionary* registry = kcrxSysRegistry();
    return registry ? KcRxDynamicLinker::cast(registry->at(L"DynamicLinker")) : nullptr;
}

KcEdCommandStack* commandStack() {
    KcRxDictionary* registry = kcrxSysRegistry();
    return registry ? KcEdCommandStack::cast(registry->at(L"KCAD_REGISTERED_COMMANDS")) : nullptr;
}

// The stack is fetched anew for every row and the add status is not examined:
// one failing command does not stop the others.
void registerCommand(const KvCommandRow& row) {
    KcEdCommandStack* stack = commandStack();
    if (!stack) return;
    const CString localName = row.localNameId != 0 ? LoadLocalCmd(row.localNameId) : CString(row.globalName);
    stack->addCommand(kKvCommandGroup, row.globalName, localName, row.flags, row.handler, nullptr, -1, nullptr,
                      nullptr);
}

KcRx::AppRetCode initialise(void* packet) {
    hLibModule = LoadResourceLibrary();
    if (!hLibModule) return KcRx::kRetError;
    if (KcRxDynamicLinker* linker = dynamicLinker()) linker->unlockApplication(packet);
    kcrxRegisterAppMDIAware(packet);
    initApp();
    return KcRx::kRetOK;
}

void unload() {
    unloadApp();
    if (hLibModule) FreeLibrary(hLibModule);
    // The handle is dead now; a later initialisation loads the library again.
    hLibModule = nullptr;
}

}  // namespace

void initApp() {
    CKcModuleResourceOverride resources(hLibModule);
    if (!kcrxServiceIsRegistered(kKvServiceName)) kcrxRegisterService(kKvServiceName);
    for (const KvCommandRow& row : kvCommandTable()) registerCommand(row);
    for (const KvCommandRow& row : kvExtraCommands()) registerCommand(row);
}

void unloadApp() {
    if (kcrxServiceIsRegistered(kKvServiceName)) {
        KcRxDictionary* registry = kcrxSysRegistry();
        KcRxDictionary* services = registry ? KcRxDictionary::cast(registry->at(L"ServiceDictionary")) : nullptr;
        if (services) delete services->remove(kKvServiceName);
    }
    if (KcEdCommandStack* stack = commandStack()) stack->removeGroup(kKvCommandGroup);
}

extern "C" KcRx::AppRetCode kcrxEntryPoint(KcRx::AppMsgCode message, void* packet) {
    switch (message) {
        case KcRx::kInitAppMsg:
            return initialise(packet);
        case KcRx::kUnloadAppMsg:
            unload();
            break;
        case KcRx::kLoadDwgMsg:
            funcload();
            break;
        case KcRx::kInvkSubrMsg:
            dofun();
            break;
        case KcRx::kQuitMsg:
            unloadApp();
            break;
        case KcRx::kDependencyMsg:
            if (packet == storedServiceReference) {
                if (KcRxDynamicLinker* linker = dynamicLinker()) linker->lockApplication(storedModuleHandle);
            }
            break;
        case KcRx::kNoDependencyMsg:
            if (packet == storedServiceReference) {
                if (KcRxDynamicLinker* linker = dynamicLinker()) linker->unlockApplication(storedModuleHandle);
            }
            break;
        case KcRx::kInitDialogMsg:
        default:
            break;
    }
    return KcRx::kRetOK;
}

extern "C" int DllMain(void* moduleHandle, unsigned long reason, void*) {
    if (reason == 1) hCurrentModule = static_cast<HMODULE>(moduleHandle);
    return 1;
}
