// The long-transaction manager (in-place reference editing). A headless host
// never edits references in place, so no document has a long transaction
// unless a test starts one: the transaction is then named by a real object of
// that document (its model-space block record), as modules only compare the
// id with the null id.
#pragma once

#include "kcap.h"

namespace korva::runtime {

class LongTransactionManager final : public KcApLongTransactionManager {
public:
    static LongTransactionManager& instance();
    KcDbObjectId currentLongTransactionFor(const KcApDocument* document) const override;

private:
    LongTransactionManager() = default;
};

// Test hooks: start or end the document's long transaction.
void startLongTransaction(const editor::Document& document);
void endLongTransaction(const editor::Document& document);

}  // namespace korva::runtime
