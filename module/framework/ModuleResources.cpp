// The module's resource state and the two resource helpers every command uses.
#include "framework/ModuleResources.h"

#include <vector>

#include "kcap.h"

HINSTANCE hLibModule = nullptr;
HMODULE hCurrentModule = nullptr;

namespace {
// Built by the module's static initialisation, destroyed at process exit.
CKcExtensionModule theExtensionModule;
}  // namespace

CKcExtensionModule* CKcModuleResourceOverride::m_extensionModule = &theExtensionModule;

CKcModuleResourceOverride::CKcModuleResourceOverride(HINSTANCE resourceHandle) {
    // A null handle falls back to the extension module's instance, itself null:
    // the host then treats the entry as "no override".
    const HINSTANCE pushed =
        resourceHandle ? resourceHandle : (m_extensionModule ? m_extensionModule->ModuleResourceInstance() : nullptr);
    if (KcApDocManager* manager = kcDocManagerPtr()) manager->pushResourceHandle(pushed);
}

CKcModuleResourceOverride::~CKcModuleResourceOverride() {
    if (KcApDocManager* manager = kcDocManagerPtr()) manager->popResourceHandle();
}

CString loadStringFrom(HINSTANCE library, UINT id) {
    // LoadStringW cuts to the buffer; grow until the text fits.
    for (int size = 512; size <= (1 << 20); size *= 4) {
        std::vector<wchar_t> buffer(static_cast<size_t>(size), L'\0');
        const int length = LoadStringW(library, id, buffer.data(), size);
        if (length <= 0) return CString();
        if (length < size - 1) return CString(std::wstring(buffer.data(), static_cast<size_t>(length)));
    }
    return CString();
}

__ResourceString::__ResourceString(UINT id, const wchar_t* fallback) : m_fallback(fallback), m_id(id) {}

__ResourceString::operator const wchar_t*() {
    m_loaded = loadStringFrom(AfxGetResourceHandle(), m_id);
    return m_loaded.IsEmpty() ? m_fallback.GetString() : m_loaded.GetString();
}

HINSTANCE LoadResourceLibrary() {
    // The resource library is used only beside the user-information module,
    // which this module does not load itself.
    if (!GetModuleHandleW(L"KvUInfo.dll")) return nullptr;
    return loadResourceDll(L"KvExtendRes.dll");
}

CString LoadLocalCmd(unsigned int id) { return hLibModule ? loadStringFrom(hLibModule, id) : CString(); }
