// Definitions behind KCRX_DECLARE_MEMBERS: one runtime class object per class,
// linked to its parent's.
#pragma once

#include "kcrx.h"

#define KCRX_DEFINE_MEMBERS(CLASS, PARENT)                                             \
    KcRxClass* CLASS::desc() {                                                         \
        static KcRxClass instance(L## #CLASS, PARENT::desc());                        \
        return &instance;                                                              \
    }                                                                                  \
    CLASS* CLASS::cast(const KcRxObject* object) {                                     \
        return object && object->isKindOf(CLASS::desc()) ? static_cast<CLASS*>(const_cast<KcRxObject*>(object)) \
                                                         : nullptr;                    \
    }                                                                                  \
    KcRxClass* CLASS::isA() const { return CLASS::desc(); }
