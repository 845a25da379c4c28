// The host objects behind HMODULE and HINSTANCE: the host program, a loaded
// extension module, a resource library or a pseudo-module (a name the host
// answers to without a file, such as "KvUInfo.dll"). Handles given to modules
// are pointers to these objects; every function that takes a handle checks it
// against the registry first, so a stale or foreign handle is refused, never
// followed.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "kcwindows.h"

namespace korva::runtime {

enum class ModuleKind { HostProgram, Module, ResourceLibrary, PseudoModule };

class HostModule {
public:
    HostModule(ModuleKind kind, std::string path);
    virtual ~HostModule();
    HostModule(const HostModule&) = delete;
    HostModule& operator=(const HostModule&) = delete;

    ModuleKind kind() const { return kind_; }
    // The full path with "/" separators (a pseudo-module's lies in the program folder).
    const std::string& path() const { return path_; }
    // The file name, as GetModuleHandleW finds it.
    const std::wstring& fileName() const { return fileName_; }
    HMODULE handle() const { return reinterpret_cast<HMODULE>(const_cast<HostModule*>(this)); }

private:
    ModuleKind kind_;
    std::string path_;
    std::wstring fileName_;
};

// Every live host module, in registration order. Thread-safe: modules may ask
// for strings from any thread.
class ModuleRegistry {
public:
    static ModuleRegistry& instance();

    void add(HostModule& module);
    void remove(const HostModule& module);
    // The module behind a handle, or null for an unknown handle.
    HostModule* find(HMODULE handle) const;
    // By file name or full path ("\" or "/"), without regard to case; null when none.
    HostModule* findByName(std::wstring_view name) const;
    // The live modules of one kind, in registration order.
    std::vector<HostModule*> ofKind(ModuleKind kind) const;

    // The host program; "korva.exe" and a null name also find it.
    HostModule& hostProgram();

private:
    ModuleRegistry();
    mutable std::recursive_mutex mutex_;
    std::vector<HostModule*> modules_;
};

// A name the host answers to without a file (registered at start-up).
void registerPseudoModule(std::wstring_view fileName);
void unregisterPseudoModule(std::wstring_view fileName);

}  // namespace korva::runtime
