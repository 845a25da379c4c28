// Documents: the document manager with the current document, opening drawings
// as further documents, the application context, the resource-handle stack that
// decides where strings and dialogs are loaded from, and the long-transaction
// manager of in-place reference editing.
#pragma once

#include <string>

#include "kcdb.h"
#include "kcwindows.h"

namespace korva::editor {
class Document;
}

namespace KcAp {
enum DocLockMode { kNone = 0, kAutoWrite = 1, kNotLocked = 2, kWrite = 4, kProtectedAutoWrite = 20, kRead = 32, kXWrite = 64 };
}

class KcApDocument : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcApDocument)
public:
    KcDbDatabase* database() const;
    // The drawing's path ("" for a drawing never saved).
    const wchar_t* fileName() const;
    // The file name without its folder.
    const wchar_t* docTitle() const;

    // Host side: the document behind it.
    explicit KcApDocument(korva::editor::Document& document) : m_document(&document) {}
    korva::editor::Document& hostDocument() const { return *m_document; }

private:
    korva::editor::Document* m_document;
    mutable std::wstring m_fileName;
    mutable std::wstring m_title;
};

class KcApDocManager : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcApDocManager)
public:
    virtual KcApDocument* curDocument() const;
    virtual KcApDocument* mdiActiveDocument() const;
    // The document whose database is `database`, or null.
    virtual KcApDocument* document(const KcDbDatabase* database) const;
    virtual int documentCount() const;
    virtual Kcad::ErrorStatus setCurDocument(KcApDocument* document, KcAp::DocLockMode mode = KcAp::kNone,
                                             bool activate = false);
    // Opens a drawing as a new document and makes it current; loaded modules hear of it.
    virtual Kcad::ErrorStatus appContextOpenDocument(const wchar_t* path);
    virtual Kcad::ErrorStatus closeDocument(KcApDocument* document);
    // Runs fn(data) at once, in the application context.
    virtual void executeInApplicationContext(void (*fn)(void*), void* data);
    virtual bool isApplicationContext() const;

    // The resource-handle stack; a null entry means "no override".
    virtual void pushResourceHandle(HINSTANCE handle);
    virtual void popResourceHandle();

protected:
    KcApDocManager() = default;
};

KcApDocManager* kcDocManagerPtr();

class KcApLongTransactionManager : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcApLongTransactionManager)
public:
    // The document's active long transaction, or the null id when none is active.
    virtual KcDbObjectId currentLongTransactionFor(const KcApDocument* document) const;

protected:
    KcApLongTransactionManager() = default;
};

KcApLongTransactionManager* kcapLongTransactionManagerPtr();
