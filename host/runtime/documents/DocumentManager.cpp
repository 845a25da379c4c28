// The document manager over the editor session, the documents' SDK objects
// and the resource-handle stack.
#include "runtime/documents/DocumentManager.h"

#include <algorithm>

#include "db/RxMacros.h"
#include "db/Utf8.h"
#include "editor/CommandLine.h"
#include "editor/Document.h"
#include "runtime/documents/DrawingFile.h"
#include "runtime/files/NativePath.h"
#include "runtime/modules/ModuleGuard.h"
#include "runtime/modules/ModuleLoader.h"

KCRX_DEFINE_MEMBERS(KcApDocument, KcRxObject)
KCRX_DEFINE_MEMBERS(KcApDocManager, KcRxObject)

KcDbDatabase* KcApDocument::database() const { return &m_document->database(); }

const wchar_t* KcApDocument::fileName() const {
    m_fileName = korva::db::utf8ToWide(m_document->path());
    return m_fileName.c_str();
}

const wchar_t* KcApDocument::docTitle() const {
    m_title = m_document->displayName();
    return m_title.c_str();
}

// The SDK class only declares the interface; the host's manager overrides it.
KcApDocument* KcApDocManager::curDocument() const { return nullptr; }
KcApDocument* KcApDocManager::mdiActiveDocument() const { return nullptr; }
KcApDocument* KcApDocManager::document(const KcDbDatabase*) const { return nullptr; }
int KcApDocManager::documentCount() const { return 0; }
Kcad::ErrorStatus KcApDocManager::setCurDocument(KcApDocument*, KcAp::DocLockMode, bool) { return Kcad::eNotImplementedYet; }
Kcad::ErrorStatus KcApDocManager::appContextOpenDocument(const wchar_t*) { return Kcad::eNotImplementedYet; }
Kcad::ErrorStatus KcApDocManager::closeDocument(KcApDocument*) { return Kcad::eNotImplementedYet; }
void KcApDocManager::executeInApplicationContext(void (*)(void*), void*) {}
bool KcApDocManager::isApplicationContext() const { return false; }
void KcApDocManager::pushResourceHandle(HINSTANCE) {}
void KcApDocManager::popResourceHandle() {}

KcApDocManager* kcDocManagerPtr() { return &korva::runtime::DocumentManager::instance(); }

namespace korva::runtime {

DocumentManager& DocumentManager::instance() {
    // Never destroyed: modules unloading at exit may still ask for it.
    static DocumentManager* manager = new DocumentManager;
    return *manager;
}

KcApDocument* DocumentManager::documentOf(editor::Document& document) const {
    auto& slot = documents_[&document];
    if (!slot) slot = std::make_unique<KcApDocument>(document);
    return slot.get();
}

void DocumentManager::forget(const editor::Document& document) { documents_.erase(&document); }

editor::Document* DocumentManager::hostDocument(const KcApDocument* document) const {
    if (!document) return nullptr;
    for (const auto& open : editor::Session::instance().documents()) {
        auto it = documents_.find(open.get());
        if (it != documents_.end() && it->second.get() == document) return open.get();
    }
    return nullptr;
}

KcApDocument* DocumentManager::curDocument() const {
    editor::Document* current = editor::Session::instance().current();
    return current ? documentOf(*current) : nullptr;
}

// A headless host has no windows: the active document is the current one.
KcApDocument* DocumentManager::mdiActiveDocument() const { return curDocument(); }

KcApDocument* DocumentManager::document(const KcDbDatabase* database) const {
    if (!database) return nullptr;
    for (const auto& open : editor::Session::instance().documents()) {
        if (&open->database() == database) return documentOf(*open);
    }
    return nullptr;
}

int DocumentManager::documentCount() const { return static_cast<int>(editor::Session::instance().documents().size()); }

Kcad::ErrorStatus DocumentManager::setCurDocument(KcApDocument* document, KcAp::DocLockMode, bool) {
    editor::Document* target = hostDocument(document);
    if (!target) return Kcad::eInvalidInput;
    editor::Session::instance().setCurrent(target);
    return Kcad::eOk;
}

Kcad::ErrorStatus DocumentManager::appContextOpenDocument(const wchar_t* path) {
    if (!path || !*path) return Kcad::eInvalidInput;
    const std::string file = nativePath(path);
    DrawingFileResult read = readDrawingFile(file);
    if (!read.database) {
        editor::CommandLine::instance().print(L"\n" + db::utf8ToWide(read.message) + L"\n");
        return read.status;
    }
    editor::Session& session = editor::Session::instance();
    editor::Document& opened = session.open(std::move(read.database), file);  // modules hear of it here
    session.setCurrent(&opened);
    return Kcad::eOk;
}

Kcad::ErrorStatus DocumentManager::closeDocument(KcApDocument* document) {
    editor::Document* target = hostDocument(document);
    if (!target) return Kcad::eInvalidInput;
    editor::Session::instance().close(*target);  // the close hook forgets the object
    return Kcad::eOk;
}

void DocumentManager::executeInApplicationContext(void (*fn)(void*), void* data) {
    if (!fn) return;
    ++applicationContext_;
    LoadedModule* owner = ModuleLoader::instance().containing(reinterpret_cast<const void*>(fn));
    ModuleCallScope scope(owner);
    guardModuleCall(owner ? owner->label() : std::wstring(L"Application context"), L"a function run in the application context",
                    [&] { fn(data); });
    --applicationContext_;
}

bool DocumentManager::isApplicationContext() const { return applicationContext_ > 0; }

void DocumentManager::pushResourceHandle(HINSTANCE handle) { resourceHandles_.push_back(handle); }

void DocumentManager::popResourceHandle() {
    if (!resourceHandles_.empty()) resourceHandles_.pop_back();
}

HINSTANCE DocumentManager::topResourceHandle() const {
    // A pushed null means "no override": the next entry down decides.
    for (auto it = resourceHandles_.rbegin(); it != resourceHandles_.rend(); ++it) {
        if (*it) return *it;
    }
    return nullptr;
}

HINSTANCE topResourceHandle() { return DocumentManager::instance().topResourceHandle(); }

}  // namespace korva::runtime
