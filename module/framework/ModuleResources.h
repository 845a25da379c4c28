// The module's resource state: the handle of the localized resource library
// "KvExtendRes.dll" (hLibModule), the module's own handle (hCurrentModule), the
// extension-module object, the scope guard that makes a resource library
// current while a command runs (CKcModuleResourceOverride), and the localized
// string with a built-in fallback (__ResourceString).
#pragma once

#include "kcmfc.h"
#include "kcwindows.h"

// The resource library, null while it is not loaded.
extern HINSTANCE hLibModule;
// The module's own handle, stored by DllMain on process attach.
extern HMODULE hCurrentModule;

// Three handle-sized fields, all null; nothing attaches a resource instance, so
// ModuleResourceInstance() stays null.
class CKcExtensionModule {
public:
    CKcExtensionModule() = default;
    CKcExtensionModule(const CKcExtensionModule&) = delete;
    CKcExtensionModule& operator=(const CKcExtensionModule&) = delete;
    HINSTANCE ModuleResourceInstance() const { return m_resourceInstance; }

private:
    HINSTANCE m_moduleInstance = nullptr;
    HINSTANCE m_defaultResourceInstance = nullptr;
    HINSTANCE m_resourceInstance = nullptr;
};

// Pushes a resource handle (with a null handle: the extension module's resource
// instance) on the document manager's resource stack; pops it when destroyed.
class CKcModuleResourceOverride {
public:
    explicit CKcModuleResourceOverride(HINSTANCE resourceHandle = nullptr);
    ~CKcModuleResourceOverride();
    CKcModuleResourceOverride(const CKcModuleResourceOverride&) = delete;
    CKcModuleResourceOverride& operator=(const CKcModuleResourceOverride&) = delete;

    static CKcExtensionModule* m_extensionModule;
};

// A localized string: converting it loads the id from the current resource
// handle, and gives the loaded text, or the fallback when the load fails.
class __ResourceString {
public:
    __ResourceString(UINT id, const wchar_t* fallback);
    ~__ResourceString() = default;
    __ResourceString(const __ResourceString&) = delete;
    __ResourceString& operator=(const __ResourceString&) = delete;
    operator const wchar_t*();  // NOLINT: converts like its model

private:
    CString m_loaded;
    CString m_fallback;
    UINT m_id;
};

// The resource library, when "KvUInfo.dll" is loaded in the process; null otherwise.
HINSTANCE LoadResourceLibrary();
// The text of id in the resource library (empty when the id or the library is missing).
CString LoadLocalCmd(unsigned int id);
// The text of id in a given library, whatever its length (empty when missing).
CString loadStringFrom(HINSTANCE library, UINT id);
