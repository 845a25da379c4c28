// Runtime classes: every host object derives from KcRxObject and names its
// exact class (isA) and its kinds (isKindOf), with checked casts. The system
// registry holds the runtime objects modules reach by name: the service
// dictionary, the command stack and the dynamic linker.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "kcadstd.h"

class KcRxObject;

class KcRxClass {
public:
    KcRxClass(const wchar_t* name, KcRxClass* parent) : m_name(name), m_parent(parent) {}
    const wchar_t* name() const { return m_name; }
    KcRxClass* myParent() const { return m_parent; }
    bool isDerivedFrom(const KcRxClass* other) const {
        for (const KcRxClass* c = this; c; c = c->m_parent) {
            if (c == other) return true;
        }
        return false;
    }

private:
    const wchar_t* m_name;
    KcRxClass* m_parent;
};

// Declares the runtime-class members of a class; KCRX_DEFINE_MEMBERS (host side) defines them.
#define KCRX_DECLARE_MEMBERS(CLASS)                   \
public:                                               \
    static KcRxClass* desc();                         \
    static CLASS* cast(const KcRxObject* object);     \
    KcRxClass* isA() const override;

class KcRxObject {
public:
    virtual ~KcRxObject();
    static KcRxClass* desc();
    static KcRxObject* cast(const KcRxObject* object) { return const_cast<KcRxObject*>(object); }
    virtual KcRxClass* isA() const;
    bool isKindOf(const KcRxClass* cls) const { return cls && isA()->isDerivedFrom(cls); }

protected:
    KcRxObject() = default;
};

// Messages the host sends to a module's entry point, and its answers.
namespace KcRx {
enum AppMsgCode {
    kNullMsg = 0,
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,
    kUnloadDwgMsg = 4,
    kInvkSubrMsg = 5,
    kQuitMsg = 8,
    kDependencyMsg = 10,
    kNoDependencyMsg = 11,
    kInitDialogMsg = 14,
};
enum AppRetCode { kRetOK = 0, kRetError = 3 };
}  // namespace KcRx

// A dictionary of runtime objects by name (keys compared exactly). It owns what it holds:
// remove() hands the object back to the caller.
class KcRxDictionary : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcRxDictionary)
public:
    KcRxDictionary() = default;
    ~KcRxDictionary() override;
    KcRxDictionary(const KcRxDictionary&) = delete;
    KcRxDictionary& operator=(const KcRxDictionary&) = delete;

    KcRxObject* at(const wchar_t* key) const;
    // Stores `object` under `key`; the object it replaces goes back to the caller.
    KcRxObject* atPut(const wchar_t* key, KcRxObject* object);
    KcRxObject* remove(const wchar_t* key);
    bool has(const wchar_t* key) const { return at(key) != nullptr; }
    unsigned int numEntries() const { return static_cast<unsigned int>(m_entries.size()); }

private:
    std::vector<std::pair<std::wstring, KcRxObject*>> m_entries;
};

// A registered service: a named marker other modules can depend on.
class KcRxService : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcRxService)
public:
    explicit KcRxService(const wchar_t* name) : m_name(name ? name : L"") {}
    const wchar_t* name() const { return m_name.c_str(); }

private:
    std::wstring m_name;
};

// Loads and unloads modules; a locked application is not unloaded.
class KcRxDynamicLinker : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcRxDynamicLinker)
public:
    // Loads a module and initialises it; true when it is (or already was) loaded.
    virtual bool loadModule(const wchar_t* fileName, bool printIt, bool asCmd = false);
    virtual bool unloadModule(const wchar_t* fileName, bool asCmd = false);
    virtual bool lockApplication(void* appPacket) const;
    virtual bool unlockApplication(void* appPacket) const;
    virtual bool isApplicationLocked(const wchar_t* fileName) const;

protected:
    KcRxDynamicLinker() = default;
};

KcRxDictionary* kcrxSysRegistry();
bool kcrxServiceIsRegistered(const wchar_t* serviceName);
// Registers a service (the one already registered under that name when there is one).
KcRxObject* kcrxRegisterService(const wchar_t* serviceName);
// Declares that a module works with several open drawings.
Kcad::ErrorStatus kcrxRegisterAppMDIAware(void* appPacket);
