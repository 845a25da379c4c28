// The root of the runtime classes.
#include "kcrx.h"

KcRxObject::~KcRxObject() = default;

KcRxClass* KcRxObject::desc() {
    static KcRxClass instance(L"KcRxObject", nullptr);
    return &instance;
}

KcRxClass* KcRxObject::isA() const { return desc(); }
