// The document manager modules see (kcDocManagerPtr): KcApDocManager over the
// editor's session. Each open document has one KcApDocument for its whole
// life. Opening a drawing reads DXF content whatever the file's extension, and
// loaded modules hear of the new document (message 3). The application
// context runs a function at once. The resource-handle stack decides where
// strings are loaded from (AfxGetResourceHandle).
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "kcap.h"

namespace korva::runtime {

class DocumentManager final : public KcApDocManager {
public:
    static DocumentManager& instance();

    KcApDocument* curDocument() const override;
    KcApDocument* mdiActiveDocument() const override;
    KcApDocument* document(const KcDbDatabase* database) const override;
    int documentCount() const override;
    Kcad::ErrorStatus setCurDocument(KcApDocument* document, KcAp::DocLockMode mode = KcAp::kNone,
                                     bool activate = false) override;
    // eInvalidInput without a path; eCantOpenFile when the file cannot be read;
    // eBadDxfFile when its content is not DXF (the reason is printed).
    Kcad::ErrorStatus appContextOpenDocument(const wchar_t* path) override;
    Kcad::ErrorStatus closeDocument(KcApDocument* document) override;
    void executeInApplicationContext(void (*fn)(void*), void* data) override;
    bool isApplicationContext() const override;
    void pushResourceHandle(HINSTANCE handle) override;
    void popResourceHandle() override;

    // The document's object (made on first use, dropped when the document closes).
    KcApDocument* documentOf(editor::Document& document) const;
    void forget(const editor::Document& document);
    // The top entry of the stack that is not null, or null.
    HINSTANCE topResourceHandle() const;

private:
    DocumentManager() = default;
    editor::Document* hostDocument(const KcApDocument* document) const;

    mutable std::map<const editor::Document*, std::unique_ptr<KcApDocument>> documents_;
    std::vector<HINSTANCE> resourceHandles_;
    int applicationContext_ = 0;
};

HINSTANCE topResourceHandle();

}  // namespace korva::runtime
