// The module loader: loads extension modules (.krx shared objects) and sends
// them the entry-point messages in the order a CAD host does:
//   load: DllMain(attach), 1 (initialise; 3 in answer unloads the module and it
//         hears nothing more), then 3 once per open document;
//   later: 3 for every document opened, 4 for every document closed;
//   quit: 8 to every module, then for each unlocked one 2, DllMain(detach),
//         and the shared object is closed; a locked module stays loaded.
// While a document message is sent, that document is the current one.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/modules/LoadedModule.h"

namespace korva::editor {
class Document;
}

namespace korva::runtime {

class ModuleLoader {
public:
    static ModuleLoader& instance();

    // Loads and initialises the module a name stands for (see findModuleFile);
    // a module already loaded is returned as it is. Null with the reason when it
    // cannot be found, loaded or initialised.
    LoadedModule* load(const std::string& name, const std::string& callerFolder, std::string& error);
    // Sends 2, calls DllMain(detach) and closes the module; false (and nothing
    // sent) when it is locked or its code is running.
    bool unload(LoadedModule& module);
    // Sends 8 to every module once, then unloads every unlocked one (the last loaded first).
    void quit();

    // The loaded module by file name or full path (without regard to case), or null.
    LoadedModule* find(std::wstring_view name) const;
    LoadedModule* fromPacket(const void* packet) const;
    // The module whose code holds the address, or null (host code).
    LoadedModule* containing(const void* address) const;
    // The module a message is being sent to right now (innermost), or null.
    LoadedModule* messageTarget() const;
    std::vector<LoadedModule*> modules() const;

    // Document events from the session (installed at start-up).
    void documentOpened(editor::Document& document);
    void documentClosing(editor::Document& document);

    // Sends a message with the exception guard, keeping track of the target.
    KcRx::AppRetCode send(LoadedModule& module, KcRx::AppMsgCode message, void* packet = nullptr);

private:
    ModuleLoader() = default;
    LoadedModule* open(const std::string& path, std::string& error);
    bool initialize(LoadedModule& module, std::string& error);
    void sendForDocument(LoadedModule& module, KcRx::AppMsgCode message, editor::Document& document);
    void discard(LoadedModule& module);

    std::vector<std::unique_ptr<LoadedModule>> modules_;
    std::vector<LoadedModule*> targets_;
};

}  // namespace korva::runtime
