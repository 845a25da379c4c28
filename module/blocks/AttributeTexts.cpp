// Attribute entity lists to TEXT entity lists, and the pending texts of BURST.
#include "blocks/AttributeTexts.h"

#include <cwchar>

#include "framework/HostUtils.h"
#include "kcdbfuncs.h"

namespace {

// An integer item of the attribute, 0 when it lacks one.
int integerOr0(const resbuf* list, int code) {
    int value = 0;
    return GetBufInt(list, code, value) == RTNORM ? value : 0;
}

// The colour items: 420 when the attribute has 420 or 430 (0 when only 430 is
// there), and 430 as well when it has both.
resbuf* colourItems(const resbuf* attribute) {
    const bool hasTrueColour = findResbufNode(attribute, 420) != nullptr;
    const bool hasColourName = findResbufNode(attribute, 430) != nullptr;
    const int count = (hasTrueColour ? 1 : 0) + (hasColourName ? 1 : 0);
    if (count == 0) return nullptr;
    const auto trueColour = static_cast<int32_t>(integerOr0(attribute, 420));
    if (count == 1) return kcutBuildList(420, trueColour, RTNONE);
    return kcutBuildList(420, trueColour, 430, getrb_string(attribute, 430), RTNONE);
}

}  // namespace

resbuf* textListFromAttribute(const resbuf* attribute) {
    if (!attribute) return nullptr;
    const KcGePoint3d position = getrb_point(attribute, 10);
    // Only X and Y of the attribute's insertion point are carried: the text's Z is not the attribute's.
    const kcad_point insertion = {position.x, position.y, 0.0};
    const KcGePoint3d alignment = getrb_point(attribute, 11);
    const kcad_point alignmentPoint = {alignment.x, alignment.y, alignment.z};

    resbuf* list = kcutBuildList(RTDXF0, L"TEXT", 10, insertion, 11, alignmentPoint,  //
                                 40, getrb_real(attribute, 40), 50, getrb_real(attribute, 50),
                                 41, getrb_real(attribute, 41), 51, getrb_real(attribute, 51),
                                 72, integerOr0(attribute, 72), 73, integerOr0(attribute, 74),
                                 71, integerOr0(attribute, 71), 62, integerOr0(attribute, 62), RTNONE);
    if (!list) return nullptr;
    if (resbuf* colour = colourItems(attribute)) append_rblist(list, colour);

    const wchar_t* linetype = getrb_string(attribute, 6, nullptr);
    resbuf* tail = kcutBuildList(7, getrb_string(attribute, 7), 8, getrb_string(attribute, 8),  //
                                 6, linetype ? linetype : L"Continuous", 1, getrb_string(attribute, 1), RTNONE);
    if (!tail) {
        kcutRelRb(list);
        return nullptr;
    }
    append_rblist(list, tail);
    return list;
}

PendingTexts::~PendingTexts() {
    for (resbuf* list : m_lists) kcutRelRb(list);
}

void PendingTexts::add(resbuf* textList) {
    if (textList) m_lists.push_back(textList);
}

void PendingTexts::makeAll() {
    for (resbuf*& list : m_lists) {
        if (kcdbEntMake(list) != RTNORM) {
            // A list the host rejects (an unknown style, say) is skipped silently.
        }
        kcutRelRb(list);
        list = nullptr;
    }
    m_lists.clear();
}

void collectAttributeTexts(const kcad_name reference, PendingTexts& pending) {
    kcad_name current = {reference[0], reference[1]};
    kcad_name next = {0, 0};
    while (kcdbEntNext(current, next) == RTNORM) {
        ResbufChain entity(kcdbEntGet(next));
        if (!entity) return;
        const wchar_t* type = getrb_string(entity.get(), 0);
        // SEQEND, or whatever follows a reference without attributes, ends the walk.
        if (std::wcscmp(type, L"ATTRIB") != 0) return;
        pending.add(textListFromAttribute(entity.get()));
        current[0] = next[0];
        current[1] = next[1];
    }
}
