// Result-buffer helpers. The value member a record uses follows its type code:
// the 5000-range data types, or the DXF group-code ranges of entity lists.
#include "framework/ResbufUtils.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <cwctype>

#include "kcdbfuncs.h"
#include "kcdbtables.h"

namespace {

bool inRange(int code, int low, int high) { return code >= low && code <= high; }

ResbufValueKind groupCodeKind(int code) {
    if (inRange(code, 0, 9) || code == 100 || code == 102 || code == 105 || inRange(code, 300, 309) ||
        inRange(code, 320, 329) || inRange(code, 410, 419) || inRange(code, 430, 439) || inRange(code, 470, 479) ||
        code == 999 || inRange(code, 1000, 1003) || code == 1005) {
        return ResbufValueKind::String;
    }
    if (inRange(code, 10, 18) || inRange(code, 110, 112) || code == 210 || inRange(code, 1010, 1013)) {
        return ResbufValueKind::Point;
    }
    if (inRange(code, 38, 59) || inRange(code, 140, 149) || inRange(code, 460, 469) || inRange(code, 1040, 1042)) {
        return ResbufValueKind::Real;
    }
    if (inRange(code, 60, 79) || inRange(code, 170, 179) || inRange(code, 270, 299) || inRange(code, 370, 389) ||
        inRange(code, 400, 409) || code == 1070) {
        return ResbufValueKind::Short;
    }
    if (inRange(code, 90, 99) || inRange(code, 420, 429) || inRange(code, 440, 459) || code == 1071) {
        return ResbufValueKind::Long;
    }
    if (inRange(code, 160, 169)) return ResbufValueKind::Int64;
    if (inRange(code, 310, 319) || code == 1004) return ResbufValueKind::Binary;
    if (inRange(code, 330, 369) || inRange(code, 390, 399)) return ResbufValueKind::Name;
    return ResbufValueKind::None;
}

wchar_t* copyString(const wchar_t* text) {
    if (!text) return nullptr;
    const size_t length = std::wcslen(text);
    auto* copy = static_cast<wchar_t*>(std::malloc((length + 1) * sizeof(wchar_t)));
    if (copy) std::wmemcpy(copy, text, length + 1);
    return copy;
}

bool sameWord(const wchar_t* a, const wchar_t* b) {
    for (; *a && *b; ++a, ++b) {
        if (std::towlower(static_cast<wint_t>(*a)) != std::towlower(static_cast<wint_t>(*b))) return false;
    }
    return *a == *b;
}

void copyName(kcad_name to, const int64_t* from) {
    to[0] = from[0];
    to[1] = from[1];
}

bool isNameRecord(const resbuf* rb) { return resbufValueKind(rb->restype) == ResbufValueKind::Name; }

// Whether the block reference named by entity uses an external reference block.
bool isExternalReferenceInsert(const kcad_name entity) {
    KcDbObjectId id;
    if (kcdbGetObjectId(id, entity) != Kcad::eOk) return false;
    KcDbBlockReference* reference = nullptr;
    if (kcdbOpenObject(reference, id, KcDb::kForRead) != Kcad::eOk) return false;
    const KcDbObjectId blockId = reference->blockTableRecord();
    reference->close();
    KcDbBlockTableRecord* block = nullptr;
    if (kcdbOpenObject(block, blockId, KcDb::kForRead) != Kcad::eOk) return false;
    const bool external = block->isFromExternalReference();
    block->close();
    return external;
}

}  // namespace

ResbufValueKind resbufValueKind(int code) {
    switch (code) {
        case RTREAL:
        case RTANG:
        case RTORINT: return ResbufValueKind::Real;
        case RTPOINT:
        case RT3DPOINT: return ResbufValueKind::Point;
        case RTSHORT: return ResbufValueKind::Short;
        case RTSTR: return ResbufValueKind::String;
        case RTENAME:
        case RTPICKS:
        case -1:
        case -2: return ResbufValueKind::Name;
        case RTLONG: return ResbufValueKind::Long;
        case -4: return ResbufValueKind::String;
        default: break;
    }
    if (code < 0 || code >= 5000) return ResbufValueKind::None;
    return groupCodeKind(code);
}

resbuf* alloc_rb(int typeCode, const wchar_t* kind, const void* value) {
    resbuf* rb = kcutNewRb(typeCode);
    if (!rb) return nullptr;
    rb->rbnext = nullptr;
    if (!kind || !value) return rb;
    if (sameWord(kind, L"rint")) {
        rb->resval.rint = *static_cast<const short*>(value);
    } else if (sameWord(kind, L"rreal")) {
        rb->resval.rreal = *static_cast<const double*>(value);
    } else if (sameWord(kind, L"rpoint")) {
        const auto* point = static_cast<const double*>(value);
        for (int i = 0; i < 3; ++i) rb->resval.rpoint[i] = point[i];
    } else if (sameWord(kind, L"rstring")) {
        rb->resval.rstring = copyString(static_cast<const wchar_t*>(value));
    } else if (sameWord(kind, L"rlong")) {
        rb->resval.rlong = *static_cast<const int32_t*>(value);
    } else if (sameWord(kind, L"rlname")) {
        copyName(rb->resval.rlname, static_cast<const int64_t*>(value));
    }
    return rb;
}

resbuf* appendRb(resbuf*& head, resbuf* node) {
    if (!head) {
        head = node;
        return head;
    }
    resbuf* last = head;
    while (last->rbnext) last = last->rbnext;
    last->rbnext = node;
    return head;
}

resbuf* append_rblist(resbuf*& head, resbuf* node) { return appendRb(head, node); }

resbuf* duplicateResbufNode(const resbuf* node) {
    if (!node) return nullptr;
    const ResbufValueKind kind = resbufValueKind(node->restype);
    if (kind == ResbufValueKind::None && node->restype != -3) return nullptr;
    resbuf* copy = kcutNewRb(node->restype);
    if (!copy) return nullptr;
    copy->rbnext = nullptr;
    switch (kind) {
        case ResbufValueKind::Short: copy->resval.rint = node->resval.rint; break;
        case ResbufValueKind::Real: copy->resval.rreal = node->resval.rreal; break;
        case ResbufValueKind::Long: copy->resval.rlong = node->resval.rlong; break;
        case ResbufValueKind::Int64: copy->resval.mnInt64 = node->resval.mnInt64; break;
        case ResbufValueKind::Point:
            for (int i = 0; i < 3; ++i) copy->resval.rpoint[i] = node->resval.rpoint[i];
            break;
        case ResbufValueKind::Name: copyName(copy->resval.rlname, node->resval.rlname); break;
        case ResbufValueKind::String: copy->resval.rstring = copyString(node->resval.rstring); break;
        case ResbufValueKind::Binary: {
            const short length = node->resval.rbinary.clen;
            copy->resval.rbinary.clen = length;
            copy->resval.rbinary.buf = nullptr;
            if (length > 0 && node->resval.rbinary.buf) {
                copy->resval.rbinary.buf = static_cast<char*>(std::malloc(static_cast<size_t>(length)));
                if (copy->resval.rbinary.buf) std::memcpy(copy->resval.rbinary.buf, node->resval.rbinary.buf, length);
            }
            break;
        }
        case ResbufValueKind::None: break;  // -3 carries no value
    }
    return copy;
}

resbuf* findResbufNode(resbuf* head, int code) {
    for (resbuf* rb = head; rb; rb = rb->rbnext) {
        if (rb->restype == code) return rb;
    }
    return nullptr;
}

const resbuf* findResbufNode(const resbuf* head, int code) {
    return findResbufNode(const_cast<resbuf*>(head), code);
}

int deleteResbufNode(resbuf*& head, int code) {
    for (resbuf** link = &head; *link; link = &(*link)->rbnext) {
        if ((*link)->restype != code) continue;
        resbuf* found = *link;
        *link = found->rbnext;
        found->rbnext = nullptr;
        kcutRelRb(found);
        return RTNORM;
    }
    return RTERROR;
}

resbuf* MakeBuffer(int code, int value) {
    const ResbufValueKind kind = resbufValueKind(code);
    if (kind != ResbufValueKind::Short && kind != ResbufValueKind::Long && kind != ResbufValueKind::Int64) return nullptr;
    resbuf* rb = kcutNewRb(code);
    if (!rb) return nullptr;
    if (kind == ResbufValueKind::Short) rb->resval.rint = static_cast<short>(value);
    else if (kind == ResbufValueKind::Long) rb->resval.rlong = value;
    else rb->resval.mnInt64 = value;
    return rb;
}

resbuf* MakeBuffer(int code, double value) {
    if (resbufValueKind(code) != ResbufValueKind::Real) return nullptr;
    resbuf* rb = kcutNewRb(code);
    if (rb) rb->resval.rreal = value;
    return rb;
}

resbuf* MakeBuffer(int code, const wchar_t* value) {
    if (!value || resbufValueKind(code) != ResbufValueKind::String) return nullptr;
    resbuf* rb = kcutNewRb(code);
    if (!rb) return nullptr;
    rb->resval.rstring = copyString(value);
    if (!rb->resval.rstring) {
        kcutRelRb(rb);
        return nullptr;
    }
    return rb;
}

resbuf* MakeBuffer(int code, const KcGePoint3d& value) {
    if (resbufValueKind(code) != ResbufValueKind::Point) return nullptr;
    resbuf* rb = kcutNewRb(code);
    if (!rb) return nullptr;
    rb->resval.rpoint[0] = value.x;
    rb->resval.rpoint[1] = value.y;
    rb->resval.rpoint[2] = value.z;
    return rb;
}

resbuf* MakeBuffer(int code, const kcad_name value) {
    if (!value || resbufValueKind(code) != ResbufValueKind::Name) return nullptr;
    resbuf* rb = kcutNewRb(code);
    if (rb) copyName(rb->resval.rlname, value);
    return rb;
}

int GetBufInt(const resbuf* head, int code, int& value) {
    const resbuf* rb = findResbufNode(head, code);
    if (!rb) return RTERROR;
    switch (resbufValueKind(rb->restype)) {
        case ResbufValueKind::Short: value = rb->resval.rint; return RTNORM;
        case ResbufValueKind::Long: value = rb->resval.rlong; return RTNORM;
        case ResbufValueKind::Int64: value = static_cast<int>(rb->resval.mnInt64); return RTNORM;
        default: return RTERROR;
    }
}

int GetBufReal(const resbuf* head, int code, double& value) {
    const resbuf* rb = findResbufNode(head, code);
    if (!rb || resbufValueKind(rb->restype) != ResbufValueKind::Real) return RTERROR;
    value = rb->resval.rreal;
    return RTNORM;
}

int GetBufString(const resbuf* head, int code, const wchar_t*& value) {
    const resbuf* rb = findResbufNode(head, code);
    if (!rb || resbufValueKind(rb->restype) != ResbufValueKind::String || !rb->resval.rstring) return RTERROR;
    value = rb->resval.rstring;
    return RTNORM;
}

int GetBufName(const resbuf* head, int code, kcad_name name) {
    const resbuf* rb = findResbufNode(head, code);
    if (!rb || !isNameRecord(rb)) return RTERROR;
    copyName(name, rb->resval.rlname);
    return RTNORM;
}

int GetBufPoint(const resbuf* head, int code, KcGePoint3d& value) {
    const resbuf* rb = findResbufNode(head, code);
    if (!rb || resbufValueKind(rb->restype) != ResbufValueKind::Point) return RTERROR;
    value.set(rb->resval.rpoint[0], rb->resval.rpoint[1], rb->resval.rpoint[2]);
    return RTNORM;
}

int GetBufFirstAndRefNames(const resbuf* head, kcad_name first, kcad_name reference) {
    bool haveFirst = false;
    for (const resbuf* rb = head; rb; rb = rb->rbnext) {
        if (!isNameRecord(rb)) continue;
        if (!haveFirst) {
            copyName(first, rb->resval.rlname);
            haveFirst = true;
        }
        if (isExternalReferenceInsert(rb->resval.rlname)) {
            copyName(reference, rb->resval.rlname);
            return RTNORM;
        }
    }
    return RTERROR;
}

int GetBufLast2Names(const resbuf* head, kcad_name last, kcad_name beforeLast) {
    const resbuf* lastName = nullptr;
    const resbuf* previousName = nullptr;
    for (const resbuf* rb = head; rb; rb = rb->rbnext) {
        if (!isNameRecord(rb)) continue;
        previousName = lastName;
        lastName = rb;
    }
    if (!lastName) return RTERROR;
    copyName(last, lastName->resval.rlname);
    beforeLast[0] = previousName ? previousName->resval.rlname[0] : 0;
    beforeLast[1] = previousName ? previousName->resval.rlname[1] : 0;
    return RTNORM;
}

int SetBufInt(resbuf* head, int code, int value) {
    resbuf* rb = findResbufNode(head, code);
    if (!rb) return RTERROR;
    switch (resbufValueKind(rb->restype)) {
        case ResbufValueKind::Short: rb->resval.rint = static_cast<short>(value); return RTNORM;
        case ResbufValueKind::Long: rb->resval.rlong = value; return RTNORM;
        case ResbufValueKind::Int64: rb->resval.mnInt64 = value; return RTNORM;
        default: return RTERROR;
    }
}

int SetBufReal(resbuf* head, int code, double value) {
    resbuf* rb = findResbufNode(head, code);
    if (!rb || resbufValueKind(rb->restype) != ResbufValueKind::Real) return RTERROR;
    rb->resval.rreal = value;
    return RTNORM;
}

int SetBufString(resbuf* head, int code, const wchar_t* value) {
    resbuf* rb = findResbufNode(head, code);
    if (!rb || !value || resbufValueKind(rb->restype) != ResbufValueKind::String) return RTERROR;
    wchar_t* copy = copyString(value);
    if (!copy) return RTERROR;
    std::free(rb->resval.rstring);
    rb->resval.rstring = copy;
    return RTNORM;
}

int SetBufPoint(resbuf* head, int code, const KcGePoint3d& value) {
    resbuf* rb = findResbufNode(head, code);
    if (!rb || resbufValueKind(rb->restype) != ResbufValueKind::Point) return RTERROR;
    rb->resval.rpoint[0] = value.x;
    rb->resval.rpoint[1] = value.y;
    rb->resval.rpoint[2] = value.z;
    return RTNORM;
}

KcGePoint3d getrb_point(const resbuf* head, int code, const KcGePoint3d& fallback) {
    KcGePoint3d value;
    return GetBufPoint(head, code, value) == RTNORM ? value : fallback;
}

double getrb_real(const resbuf* head, int code, double fallback) {
    double value = 0.0;
    return GetBufReal(head, code, value) == RTNORM ? value : fallback;
}

const wchar_t* getrb_string(const resbuf* head, int code, const wchar_t* fallback) {
    const wchar_t* value = nullptr;
    return GetBufString(head, code, value) == RTNORM ? value : fallback;
}

int setrb_int(resbuf*& head, int code, int value) {
    if (findResbufNode(head, code)) return SetBufInt(head, code, value);
    resbuf* rb = MakeBuffer(code, value);
    if (!rb) return RTERROR;
    appendRb(head, rb);
    return RTNORM;
}

int setrb_string(resbuf*& head, int code, const wchar_t* value) {
    if (findResbufNode(head, code)) return SetBufString(head, code, value);
    resbuf* rb = MakeBuffer(code, value);
    if (!rb) return RTERROR;
    appendRb(head, rb);
    return RTNORM;
}

ResbufChain::~ResbufChain() { kcutRelRb(m_chain); }

void ResbufChain::reset(resbuf* chain) {
    if (chain == m_chain) return;
    kcutRelRb(m_chain);
    m_chain = chain;
}
