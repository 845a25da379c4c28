// Long transactions started by tests, per document.
#include "runtime/documents/LongTransactions.h"

#include <set>

#include "db/ObjectAccess.h"
#include "db/RxMacros.h"
#include "editor/Document.h"

KCRX_DEFINE_MEMBERS(KcApLongTransactionManager, KcRxObject)

// The SDK class only declares the interface; the host's manager overrides it.
KcDbObjectId KcApLongTransactionManager::currentLongTransactionFor(const KcApDocument*) const { return KcDbObjectId::kNull; }

KcApLongTransactionManager* kcapLongTransactionManagerPtr() { return &korva::runtime::LongTransactionManager::instance(); }

namespace korva::runtime {

namespace {

std::set<const editor::Document*>& started() {
    static std::set<const editor::Document*> documents;
    return documents;
}

}  // namespace

LongTransactionManager& LongTransactionManager::instance() {
    static LongTransactionManager* manager = new LongTransactionManager;  // modules may ask at exit
    return *manager;
}

KcDbObjectId LongTransactionManager::currentLongTransactionFor(const KcApDocument* document) const {
    if (!document || !started().count(&document->hostDocument())) return KcDbObjectId::kNull;
    return db::ObjectAccess::id(document->hostDocument().drawing().modelSpace());
}

void startLongTransaction(const editor::Document& document) { started().insert(&document); }

void endLongTransaction(const editor::Document& document) { started().erase(&document); }

}  // namespace korva::runtime
