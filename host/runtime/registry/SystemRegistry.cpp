// The system registry: the dictionary of runtime objects modules reach by name,
// with the service dictionary inside it. The registry lives as long as the
// process: modules may still look it up while they unload at exit.
#include "db/RxMacros.h"
#include "kcedcommands.h"

KCRX_DEFINE_MEMBERS(KcRxDictionary, KcRxObject)
KCRX_DEFINE_MEMBERS(KcRxService, KcRxObject)
KCRX_DEFINE_MEMBERS(KcRxDynamicLinker, KcRxObject)

namespace {

constexpr const wchar_t* kServiceDictionary = L"ServiceDictionary";

KcRxDictionary* serviceDictionary() { return KcRxDictionary::cast(kcrxSysRegistry()->at(kServiceDictionary)); }

}  // namespace

KcRxDictionary::~KcRxDictionary() {
    for (auto& entry : m_entries) delete entry.second;
}

KcRxObject* KcRxDictionary::at(const wchar_t* key) const {
    if (!key) return nullptr;
    for (const auto& entry : m_entries) {
        if (entry.first == key) return entry.second;
    }
    return nullptr;
}

KcRxObject* KcRxDictionary::atPut(const wchar_t* key, KcRxObject* object) {
    if (!key) return object;
    for (auto& entry : m_entries) {
        if (entry.first == key) {
            KcRxObject* previous = entry.second;
            entry.second = object;
            return previous;
        }
    }
    m_entries.emplace_back(key, object);
    return nullptr;
}

KcRxObject* KcRxDictionary::remove(const wchar_t* key) {
    if (!key) return nullptr;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it) {
        if (it->first == key) {
            KcRxObject* removed = it->second;
            m_entries.erase(it);
            return removed;
        }
    }
    return nullptr;
}

KcRxDictionary* kcrxSysRegistry() {
    // Never destroyed: modules unloading at exit still reach it.
    static KcRxDictionary* registry = [] {
        auto* dictionary = new KcRxDictionary;
        dictionary->atPut(kServiceDictionary, new KcRxDictionary);
        return dictionary;
    }();
    return registry;
}

bool kcrxServiceIsRegistered(const wchar_t* serviceName) {
    KcRxDictionary* services = serviceDictionary();
    return services && services->at(serviceName) != nullptr;
}

KcRxObject* kcrxRegisterService(const wchar_t* serviceName) {
    KcRxDictionary* services = serviceDictionary();
    if (!services || !serviceName || !*serviceName) return nullptr;
    if (KcRxObject* existing = services->at(serviceName)) return existing;
    auto* service = new KcRxService(serviceName);
    services->atPut(serviceName, service);
    return service;
}

bool KcRxDynamicLinker::loadModule(const wchar_t*, bool, bool) { return false; }
bool KcRxDynamicLinker::unloadModule(const wchar_t*, bool) { return false; }
bool KcRxDynamicLinker::lockApplication(void*) const { return false; }
bool KcRxDynamicLinker::unlockApplication(void*) const { return false; }
bool KcRxDynamicLinker::isApplicationLocked(const wchar_t*) const { return false; }
