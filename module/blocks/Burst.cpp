// BURST: explodes block references like the host's explode but keeps what
// their attributes showed. Each attribute becomes a single-line text with the
// attribute's value and look, each constant attribute definition a text with
// its default value, and the attribute definitions the explosions release are
// deleted. The steps live in their own files: the selection, the attribute
// texts, the explosion of one reference and the clean-up of definitions.
#include "blocks/AttributeTexts.h"
#include "blocks/BurstSelection.h"
#include "blocks/BurstVariables.h"
#include "blocks/ReferenceBurst.h"
#include "blocks/ReleasedDefinitions.h"
#include "framework/CommandHandlers.h"
#include "framework/HostUtils.h"
#include "kced.h"

namespace {

// The members of a set, in index order.
template <class Visit>
void forEachMember(const kcad_name set, Visit&& visit) {
    Kcad::Int32 length = 0;
    if (set[0] == 0 && set[1] == 0) return;
    if (kcedSSLength(set, &length) != RTNORM) return;
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name member = {0, 0};
        if (kcedSSName(set, i, member) == RTNORM) visit(member);
    }
}

void runBurst() {
    BurstVariables variables;
    ReleasedDefinitions definitions;  // the attribute definitions already in the drawing
    PendingTexts texts;
    {
        SelectionSetGuard references;
        if (selectReferencesToBurst(references.name()) == RTCAN) {
            // Cancel ends the command at once; the variables deliberately keep their silenced values.
            variables.keepCurrentValues();
            return;
        }
        // All attribute texts are collected before anything is exploded.
        forEachMember(references.name(), [&](const kcad_name reference) { collectAttributeTexts(reference, texts); });
        forEachMember(references.name(), [](const kcad_name reference) { burstReference(reference); });
    }
    definitions.deleteReleased();
    texts.makeAll();
}

}  // namespace

void Burst() {
    CKcModuleResourceOverride resources(hLibModule);
    try {
        runBurst();
    } catch (...) {
        // Nothing may leave a command; the guards have restored what they hold.
    }
}
