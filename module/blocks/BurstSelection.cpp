// Choosing the references BURST works on.
#include "blocks/BurstSelection.h"

#include <array>
#include <cwctype>
#include <vector>

#include "blocks/BlockResourceIds.h"
#include "framework/HostUtils.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcut.h"

namespace {

constexpr int kExternalReferenceFlag = 4;
constexpr int kOverlayFlag = 8;

bool equalsIgnoringCase(const wchar_t* text, const wchar_t* expected) {
    for (; *text && *expected; ++text, ++expected) {
        if (std::towupper(static_cast<wint_t>(*text)) != std::towupper(static_cast<wint_t>(*expected))) return false;
    }
    return *text == *expected;
}

bool isExternalReferenceBlock(const wchar_t* blockName) {
    ResbufChain block(kcdbTblSearch(L"BLOCK", blockName));
    int flags = 0;
    if (!block || GetBufInt(block.get(), 70, flags) != RTNORM) return false;
    return (flags & (kExternalReferenceFlag | kOverlayFlag)) != 0;
}

// A member BURST keeps: an INSERT of a block that is neither an external reference nor an overlay.
bool isBurstableReference(const kcad_name entity) {
    ResbufChain list(kcdbEntGet(entity));
    if (!list || !equalsIgnoringCase(getrb_string(list.get(), 0), L"INSERT")) return false;
    return !isExternalReferenceBlock(getrb_string(list.get(), 2));
}

Kcad::Int32 lengthOf(const kcad_name set) {
    Kcad::Int32 length = 0;
    return kcedSSLength(set, &length) == RTNORM ? length : 0;
}

// Drops what is not a burstable reference and reports both counts.
void keepBurstableReferences(const kcad_name selection) {
    std::vector<std::array<int64_t, 2>> dropped;
    const Kcad::Int32 length = lengthOf(selection);
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name member = {0, 0};
        if (kcedSSName(selection, i, member) != RTNORM) continue;
        if (!isBurstableReference(member)) dropped.push_back({member[0], member[1]});
    }
    for (const auto& member : dropped) {
        if (kcedSSDel(member.data(), selection) != RTNORM) continue;  // it was counted; it stays a member
    }
    const Kcad::Int32 remaining = lengthOf(selection);
    if (!dropped.empty()) kcutPrintf(StringFromID(kBurstIgnoredObjectsId), static_cast<int>(dropped.size()));
    if (remaining > 0) kcutPrintf(StringFromID(kBurstReferenceCountId), static_cast<int>(remaining));
}

bool pickFirstIsOn() {
    resbuf value{};
    return kcedGetVar(L"PICKFIRST", &value) == RTNORM && value.restype == RTSHORT && value.resval.rint == 1;
}

void clearPickFirst() {
    if (kcedSSSetFirst(nullptr, nullptr) != RTNORM) {
        // Nothing to clear, or no document: either way no pick-first set remains.
    }
}

}  // namespace

int selectReferencesToBurst(kcad_name selection) {
    selection[0] = selection[1] = 0;
    // A pick-first set is taken as it is, without any filtering.
    const bool tookPickFirst = pickFirstIsOn() && kcedSSGet(L"I", nullptr, nullptr, nullptr, selection) == RTNORM;
    clearPickFirst();
    if (tookPickFirst) return RTNORM;

    const int status = kcedSSGet(nullptr, nullptr, nullptr, nullptr, selection);
    if (status == RTCAN) return RTCAN;
    if (status != RTNORM) selection[0] = selection[1] = 0;  // nothing selected: no set was made
    if (status == RTNORM) filterEntitisInLockedLayer(selection);
    if (lengthOf(selection) == 0) {
        kcutPrintf(L"%ls", static_cast<const wchar_t*>(StringFromID(kNothingSelectedId)));
        return RTNORM;
    }
    keepBurstableReferences(selection);
    return RTNORM;
}
