// Loading, initialising, notifying and unloading extension modules.
#include "runtime/modules/ModuleLoader.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>

#include "db/Utf8.h"
#include "editor/Document.h"
#include "runtime/modules/ModuleCommandStack.h"
#include "runtime/modules/ModuleLisp.h"
#include "runtime/modules/ModuleSearch.h"

namespace korva::runtime {

namespace {

constexpr unsigned long kProcessAttach = 1;
constexpr unsigned long kProcessDetach = 0;

// Makes a document current for the length of a message, then restores the
// previous one if it is still open.
class CurrentDocumentScope {
public:
    explicit CurrentDocumentScope(editor::Document& document)
        : session_(editor::Session::instance()), previous_(session_.current()) {
        if (previous_ != &document) session_.setCurrent(&document);
    }
    ~CurrentDocumentScope() {
        if (session_.current() == previous_) return;
        const auto& open = session_.documents();
        const bool stillOpen = std::any_of(open.begin(), open.end(), [&](const auto& d) { return d.get() == previous_; });
        if (stillOpen) session_.setCurrent(previous_);
    }
    CurrentDocumentScope(const CurrentDocumentScope&) = delete;
    CurrentDocumentScope& operator=(const CurrentDocumentScope&) = delete;

private:
    editor::Session& session_;
    editor::Document* previous_;
};

std::vector<editor::Document*> openDocuments() {
    std::vector<editor::Document*> out;
    for (const auto& document : editor::Session::instance().documents()) out.push_back(document.get());
    return out;
}

bool isOpen(const editor::Document* document) {
    const auto& open = editor::Session::instance().documents();
    return std::any_of(open.begin(), open.end(), [&](const auto& d) { return d.get() == document; });
}

}  // namespace

ModuleLoader& ModuleLoader::instance() {
    static ModuleLoader loader;
    return loader;
}

LoadedModule* ModuleLoader::load(const std::string& name, const std::string& callerFolder, std::string& error) {
    const bool bareName = name.find_first_of("/\\") == std::string::npos;
    if (bareName) {
        if (LoadedModule* loaded = find(db::utf8ToWide(name))) return loaded;
    }
    const std::string path = findModuleFile(name, callerFolder, error);
    if (path.empty()) return nullptr;
    std::error_code ignored;
    const std::string canonical = std::filesystem::weakly_canonical(path, ignored).string();
    for (const auto& module : modules_) {
        if (module->path() == canonical) return module.get();
    }
    LoadedModule* module = open(canonical, error);
    if (!module) return nullptr;
    if (!initialize(*module, error)) return nullptr;
    return module;
}

// dlopen, the entry point and DllMain(attach); the module joins the list.
LoadedModule* ModuleLoader::open(const std::string& path, std::string& error) {
    const std::string fileName = std::filesystem::path(path).filename().string();
    ::dlerror();
    void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        const char* reason = ::dlerror();
        error = "cannot load the module \"" + path + "\": " + (reason ? reason : "unknown reason");
        return nullptr;
    }
    auto entryPoint = reinterpret_cast<LoadedModule::EntryPoint>(::dlsym(library, "kcrxEntryPoint"));
    if (!entryPoint) {
        ::dlclose(library);
        error = fileName + " is not an extension module: it has no entry point kcrxEntryPoint";
        return nullptr;
    }
    auto dllMain = reinterpret_cast<LoadedModule::DllMainFunction>(::dlsym(library, "DllMain"));
    modules_.push_back(std::make_unique<LoadedModule>(path, library, entryPoint, dllMain));
    LoadedModule& module = *modules_.back();
    ModuleRegistry::instance().add(module);
    if (!module.callDllMain(kProcessAttach)) {
        error = fileName + " could not be initialized: DllMain refused to attach";
        discard(module);
        return nullptr;
    }
    return &module;
}

// Message 1; on success message 3 for every open document.
bool ModuleLoader::initialize(LoadedModule& module, std::string& error) {
    if (send(module, KcRx::kInitAppMsg, module.packet()) != KcRx::kRetOK) {
        error = db::wideToUtf8(module.fileName()) + " could not be initialized";
        module.callDllMain(kProcessDetach);
        discard(module);
        return false;
    }
    module.initialized = true;
    for (editor::Document* document : openDocuments()) {
        if (isOpen(document)) sendForDocument(module, KcRx::kLoadDwgMsg, *document);
    }
    return true;
}

bool ModuleLoader::unload(LoadedModule& module) {
    if (module.locked || module.activeCalls > 0) return false;
    send(module, KcRx::kUnloadAppMsg);
    module.callDllMain(kProcessDetach);
    discard(module);
    return true;
}

void ModuleLoader::quit() {
    for (LoadedModule* module : modules()) {
        if (module->quitSent) continue;
        module->quitSent = true;
        send(*module, KcRx::kQuitMsg);
    }
    std::vector<LoadedModule*> lastFirst = modules();
    std::reverse(lastFirst.begin(), lastFirst.end());
    for (LoadedModule* module : lastFirst) unload(*module);
}

// Forgets what the module left registered, closes it and drops it from every list.
void ModuleLoader::discard(LoadedModule& module) {
    forgetCommandsOf(module);
    forgetLispFunctionsOf(module);
    ModuleRegistry::instance().remove(module);
    module.close();
    std::erase(targets_, &module);
    std::erase_if(modules_, [&](const auto& m) { return m.get() == &module; });
}

LoadedModule* ModuleLoader::find(std::wstring_view name) const {
    HostModule* found = ModuleRegistry::instance().findByName(name);
    return found && found->kind() == ModuleKind::Module ? static_cast<LoadedModule*>(found) : nullptr;
}

LoadedModule* ModuleLoader::fromPacket(const void* packet) const {
    if (!packet) return nullptr;
    for (const auto& module : modules_) {
        if (module.get() == packet) return module.get();
    }
    return nullptr;
}

LoadedModule* ModuleLoader::containing(const void* address) const {
    for (const auto& module : modules_) {
        if (module->contains(address)) return module.get();
    }
    return nullptr;
}

LoadedModule* ModuleLoader::messageTarget() const { return targets_.empty() ? nullptr : targets_.back(); }

std::vector<LoadedModule*> ModuleLoader::modules() const {
    std::vector<LoadedModule*> out;
    for (const auto& module : modules_) out.push_back(module.get());
    return out;
}

KcRx::AppRetCode ModuleLoader::send(LoadedModule& module, KcRx::AppMsgCode message, void* packet) {
    targets_.push_back(&module);
    const KcRx::AppRetCode result = module.send(message, packet);
    // The module may be gone (it had itself unloaded): remove by identity.
    if (auto it = std::find(targets_.rbegin(), targets_.rend(), &module); it != targets_.rend()) {
        targets_.erase(std::next(it).base());
    }
    return result;
}

void ModuleLoader::sendForDocument(LoadedModule& module, KcRx::AppMsgCode message, editor::Document& document) {
    CurrentDocumentScope current(document);
    send(module, message);
}

void ModuleLoader::documentOpened(editor::Document& document) {
    for (LoadedModule* module : modules()) {
        if (module->initialized && fromPacket(module) && isOpen(&document)) sendForDocument(*module, KcRx::kLoadDwgMsg, document);
    }
}

void ModuleLoader::documentClosing(editor::Document& document) {
    for (LoadedModule* module : modules()) {
        if (module->initialized && fromPacket(module)) sendForDocument(*module, KcRx::kUnloadDwgMsg, document);
    }
    forgetLispFunctionsOf(document);
}

}  // namespace korva::runtime
