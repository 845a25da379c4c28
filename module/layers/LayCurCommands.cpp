// LAYCUR moves the selected objects onto the current layer; LAYCUR1 (through
// SetCurLayer) makes the layer of the first selected object current. Both use
// the host's general selection, which takes a pick-first set when the command
// allows it.
#include <string>

#include "framework/CommandHandlers.h"
#include "framework/ResbufUtils.h"
#include "framework/SelectionUtils.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "layers/LayerCommandFrame.h"
#include "layers/LayerCurrent.h"
#include "layers/LayerHostState.h"
#include "layers/LayerNames.h"
#include "layers/LayerResourceIds.h"
#include "layers/LayerRoutines.h"
#include "layers/LayerTexts.h"

using namespace KvLayers;

namespace {

constexpr int kLayerGroup = 8;

enum class MoveResult { Moved, AlreadyThere, Unreadable, Failed };

// Puts one entity on the layer; an entity already there is only updated. Failed
// means kcdbEntMod refused the change.
MoveResult moveToLayer(const kcad_name entity, const std::wstring& layer) {
    ResbufChain list(kcdbEntGet(entity));
    const wchar_t* own = nullptr;
    if (!list || GetBufString(list.get(), kLayerGroup, own) != RTNORM) return MoveResult::Unreadable;
    if (sameLayerName(own, layer.c_str())) {
        kcdbEntUpd(entity);
        return MoveResult::AlreadyThere;
    }
    if (SetBufString(list.get(), kLayerGroup, layer.c_str()) != RTNORM) return MoveResult::Failed;
    if (kcdbEntMod(list.get()) != RTNORM) return MoveResult::Failed;
    kcdbEntUpd(entity);
    return MoveResult::Moved;
}

}  // namespace

void LayCur() {
    LayerCommandFrame frame;
    std::wstring current;
    if (!currentLayerName(current)) return;
    printLayerText(LayerResourceIds::kLayCurSelectPrompt);
    SelectionSetGuard selection;
    if (kcedSSGet(nullptr, nullptr, nullptr, nullptr, selection.name()) != RTNORM) return;
    Kcad::Int32 length = 0;
    if (kcedSSLength(selection.name(), &length) != RTNORM) return;
    int changed = 0;
    for (Kcad::Int32 index = 0; index < length; ++index) {
        kcad_name entity = {0, 0};
        if (kcedSSName(selection.name(), index, entity) != RTNORM) continue;
        const MoveResult result = moveToLayer(entity, current);
        // The first entity that cannot be changed ends the command without the closing message.
        if (result == MoveResult::Failed) return;
        if (result == MoveResult::Moved) ++changed;
    }
    CString message;
    message.Format(layerText(LayerResourceIds::kLayCurResult), changed, current.c_str());
    printText(message);
}

int SetCurLayer() {
    LayerCommandFrame frame;
    printLayerText(LayerResourceIds::kLayCur1Prompt);
    SelectionSetGuard selection;
    if (kcedSSGet(nullptr, nullptr, nullptr, nullptr, selection.name()) != RTNORM) return 0;
    kcad_name first = {0, 0};
    if (kcedSSName(selection.name(), 0, first) != RTNORM) return 0;
    wchar_t layer[kLayerNameSize] = {};
    if (!GetObjLayer(first, layer, kLayerNameSize)) return RTERROR;
    return dsc_set_clayer(layer);
}

void LayCur1() { SetCurLayer(); }
