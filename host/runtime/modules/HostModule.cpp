// The registry of host modules and the pseudo-modules it answers to.
#include "runtime/modules/HostModule.h"

#include <algorithm>
#include <cwctype>
#include <filesystem>
#include <memory>

#include "db/Utf8.h"
#include "runtime/modules/ModuleSearch.h"

namespace korva::runtime {

namespace {

constexpr std::wstring_view kHostProgramAlias = L"korva.exe";

bool sameText(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) {
               return std::towlower(static_cast<wint_t>(x)) == std::towlower(static_cast<wint_t>(y));
           });
}

std::wstring withSlashes(std::wstring_view name) {
    std::wstring out(name);
    std::replace(out.begin(), out.end(), L'\\', L'/');
    return out;
}

// Pseudo-modules live as long as their registration.
std::vector<std::unique_ptr<HostModule>>& pseudoModules() {
    static std::vector<std::unique_ptr<HostModule>> modules;
    return modules;
}

}  // namespace

HostModule::HostModule(ModuleKind kind, std::string path)
    : kind_(kind), path_(std::move(path)), fileName_(db::utf8ToWide(std::filesystem::path(path_).filename().string())) {}

HostModule::~HostModule() = default;

ModuleRegistry& ModuleRegistry::instance() {
    static ModuleRegistry registry;
    return registry;
}

ModuleRegistry::ModuleRegistry() {
    // The program is a module like the others, registered once and never removed.
    static HostModule program(ModuleKind::HostProgram, programPath());
    modules_.push_back(&program);
}

HostModule& ModuleRegistry::hostProgram() {
    std::lock_guard guard(mutex_);
    return *modules_.front();
}

void ModuleRegistry::add(HostModule& module) {
    std::lock_guard guard(mutex_);
    if (std::find(modules_.begin(), modules_.end(), &module) == modules_.end()) modules_.push_back(&module);
}

void ModuleRegistry::remove(const HostModule& module) {
    std::lock_guard guard(mutex_);
    if (&module == modules_.front()) return;
    std::erase(modules_, &module);
}

HostModule* ModuleRegistry::find(HMODULE handle) const {
    std::lock_guard guard(mutex_);
    for (HostModule* module : modules_) {
        if (module->handle() == handle) return module;
    }
    return nullptr;
}

HostModule* ModuleRegistry::findByName(std::wstring_view name) const {
    std::lock_guard guard(mutex_);
    if (sameText(name, kHostProgramAlias)) return modules_.front();
    const std::wstring wanted = withSlashes(name);
    const bool byPath = wanted.find(L'/') != std::wstring::npos;
    for (HostModule* module : modules_) {
        const std::wstring candidate = byPath ? db::utf8ToWide(module->path()) : module->fileName();
        if (sameText(candidate, wanted)) return module;
    }
    return nullptr;
}

std::vector<HostModule*> ModuleRegistry::ofKind(ModuleKind kind) const {
    std::lock_guard guard(mutex_);
    std::vector<HostModule*> out;
    for (HostModule* module : modules_) {
        if (module->kind() == kind) out.push_back(module);
    }
    return out;
}

void registerPseudoModule(std::wstring_view fileName) {
    ModuleRegistry& registry = ModuleRegistry::instance();
    for (const auto& existing : pseudoModules()) {
        if (sameText(existing->fileName(), fileName)) return;
    }
    const std::string path = (std::filesystem::path(programFolder()) / db::wideToUtf8(fileName)).string();
    pseudoModules().push_back(std::make_unique<HostModule>(ModuleKind::PseudoModule, path));
    registry.add(*pseudoModules().back());
}

void unregisterPseudoModule(std::wstring_view fileName) {
    auto& modules = pseudoModules();
    for (auto it = modules.begin(); it != modules.end(); ++it) {
        if (sameText((*it)->fileName(), fileName)) {
            ModuleRegistry::instance().remove(**it);
            modules.erase(it);
            return;
        }
    }
}

}  // namespace korva::runtime
