// Runtime classes: every host object derives from KcRxObject and names its
// exact class (isA) and its kinds (isKindOf), with checked casts.
#pragma once

#include "kcadstd.h"

class KcRxObject;

class KcRxClass {
public:
    KcRxClass(const wchar_t* name, KcRxClass* parent) : m_name(name), m_parent(parent) {}
    const wchar_t* name() const { return m_name; }
    KcRxClass* myParent() const { return m_parent; }
    bool isDerivedFrom(const KcRxClass* other) const {
        for (const KcRxClass* c = this; c; c = c->m_parent) {
            if (c == other) return true;
        }
        return false;
    }

private:
    const wchar_t* m_name;
    KcRxClass* m_parent;
};

// Declares the runtime-class members of a class; KCRX_DEFINE_MEMBERS (host side) defines them.
#define KCRX_DECLARE_MEMBERS(CLASS)                   \
public:                                               \
    static KcRxClass* desc();                         \
    static CLASS* cast(const KcRxObject* object);     \
    KcRxClass* isA() const override;

class KcRxObject {
public:
    virtual ~KcRxObject();
    static KcRxClass* desc();
    static KcRxObject* cast(const KcRxObject* object) { return const_cast<KcRxObject*>(object); }
    virtual KcRxClass* isA() const;
    bool isKindOf(const KcRxClass* cls) const { return cls && isA()->isDerivedFrom(cls); }

protected:
    KcRxObject() = default;
};
