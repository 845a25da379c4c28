// Finding and deleting the attribute definitions released by explosions.
#include "blocks/ReleasedDefinitions.h"

#include <array>
#include <vector>

#include "framework/HostUtils.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace {

// Every ATTDEF of model space and the layouts into set; RTERROR (and no set) when there is none.
int selectAttributeDefinitions(kcad_name set) {
    ResbufChain filter(kcutBuildList(RTDXF0, L"ATTDEF", RTNONE));
    if (!filter) return RTERROR;
    return kcedSSGet(L"X", nullptr, nullptr, filter.get(), set);
}

}  // namespace

ReleasedDefinitions::ReleasedDefinitions() {
    if (selectAttributeDefinitions(m_before.name()) != RTNORM) m_before.name()[0] = m_before.name()[1] = 0;
}

void ReleasedDefinitions::deleteReleased() {
    SelectionSetGuard after;
    if (selectAttributeDefinitions(after.name()) != RTNORM) return;  // none in the drawing
    Kcad::Int32 length = 0;
    if (kcedSSLength(after.name(), &length) != RTNORM) return;
    // Those that were there before are passed over; the rest came out of the explosions.
    std::vector<std::array<int64_t, 2>> released;
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name member = {0, 0};
        if (kcedSSName(after.name(), i, member) != RTNORM) continue;
        if (!m_before.isNull() && kcedSSMemb(member, m_before.name()) == RTNORM) continue;
        released.push_back({member[0], member[1]});
    }
    for (const auto& member : released) {
        if (kcdbEntDel(member.data()) != RTNORM) {
            // A definition on a locked layer cannot be deleted and stays.
        }
    }
}
