// The SDK's entity picks: kcedEntSel gives the top-level entity; kcedNEntSelP
// and kcedNEntSel give the innermost entity with the references around it
// (innermost first) and the map from its block's coordinates to the world.
#include <exception>

#include "db/EntityNames.h"
#include "db/ResultBuffers.h"
#include "editor/selection/PickPrompt.h"
#include "kced.h"

using namespace korva::editor;

namespace {

void storePoint(const KcGePoint3d& p, kcad_point out) {
    if (!out) return;
    out[0] = p.x;
    out[1] = p.y;
    out[2] = p.z;
}

// The containers as an RTENAME chain, innermost first; null when the pick was not nested.
resbuf* containerChain(const PickAnswer& answer) {
    if (answer.byName || answer.leaf.containers.empty()) return nullptr;
    korva::db::ResbufChain chain;
    for (auto it = answer.leaf.containers.rbegin(); it != answer.leaf.containers.rend(); ++it) {
        chain.appendName(RTENAME, *it);
    }
    return chain.release();
}

KcGeMatrix3d leafTransform(const PickAnswer& answer) {
    return answer.byName ? KcGeMatrix3d::kIdentity : answer.leaf.toWorld;
}

int nestedPick(const wchar_t* prompt, kcad_name entity, kcad_point pickPoint, bool usePoint, KcGeMatrix3d& xform,
               resbuf** containers) {
    if (containers) *containers = nullptr;
    const PickAnswer answer =
        usePoint ? pickAtUcsPoint({pickPoint[0], pickPoint[1], pickPoint[2]}) : promptPick(prompt);
    if (answer.status != RTNORM) return answer.status;
    korva::db::nameOf(answer.leaf.leaf, entity);
    storePoint(answer.ucsPoint, pickPoint);
    xform = leafTransform(answer);
    if (containers) *containers = containerChain(answer);
    return RTNORM;
}

}  // namespace

int kcedEntSel(const wchar_t* prompt, kcad_name entity, kcad_point pickPoint) {
    if (!entity) return RTERROR;
    try {
        const PickAnswer answer = promptPick(prompt);
        if (answer.status != RTNORM) return answer.status;
        korva::db::nameOf(answer.entity, entity);
        storePoint(answer.ucsPoint, pickPoint);
        return RTNORM;
    } catch (const std::exception&) {
        return RTERROR;
    }
}

int kcedNEntSelP(const wchar_t* prompt, kcad_name entity, kcad_point pickPoint, int pickFlag, kcad_matrix xform,
                 resbuf** containers) {
    if (!entity || (pickFlag && !pickPoint)) return RTERROR;
    try {
        KcGeMatrix3d m;
        const int status = nestedPick(prompt, entity, pickPoint, pickFlag != 0, m, containers);
        if (status != RTNORM) return status;
        if (xform) {
            for (int row = 0; row < 4; ++row) {
                for (int column = 0; column < 4; ++column) xform[row][column] = m(row, column);
            }
        }
        return RTNORM;
    } catch (const std::exception&) {
        return RTERROR;
    }
}

int kcedNEntSel(const wchar_t* prompt, kcad_name entity, kcad_point pickPoint, kcad_point xform[4], resbuf** containers) {
    if (!entity) return RTERROR;
    try {
        KcGeMatrix3d m;
        const int status = nestedPick(prompt, entity, pickPoint, false, m, containers);
        if (status != RTNORM) return status;
        // Four points: the images of the block's x, y and z axes, then of its origin (the matrix's columns).
        if (xform) {
            for (int column = 0; column < 4; ++column) {
                for (int row = 0; row < 3; ++row) xform[column][row] = m(row, column);
            }
        }
        return RTNORM;
    } catch (const std::exception&) {
        return RTERROR;
    }
}
