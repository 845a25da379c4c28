// LAYLCK and LAYULK: lock or unlock the layer of a picked object through the
// host's -LAYER command. LAYLCK keeps picking until Enter or cancel and closes
// with a summary of the layers it locked; LAYULK ends after one unlock. Each
// change tells the toolbar's layer control to refresh.
#include "framework/CommandHandlers.h"
#include "kced.h"
#include "layers/LayerCommandFrame.h"
#include "layers/LayerHostState.h"
#include "layers/LayerNames.h"
#include "layers/LayerResourceIds.h"
#include "layers/LayerRoutines.h"
#include "layers/LayerTexts.h"

using namespace KvLayers;

namespace {

enum class PickResult { Picked, Missed, Ended };

// One top-level pick: the picked entity's layer, a miss (ERRNO 7), or the end (anything else).
PickResult pickLayer(const CString& prompt, wchar_t* layer) {
    kcad_name entity = {0, 0};
    kcad_point pickPoint = {0, 0, 0};
    const int status = kcedEntSel(prompt, entity, pickPoint);
    if (status == RTERROR && lastPickMissed()) return PickResult::Missed;
    if (status != RTNORM) return PickResult::Ended;
    return GetObjLayer(entity, layer, kLayerNameSize) ? PickResult::Picked : PickResult::Missed;
}

int lockLayer(const wchar_t* layer) {
    const std::wstring pattern = layerNamePattern(layer);
    return kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_LO", RTSTR, pattern.c_str(), RTSTR, L"", RTNONE);
}

int unlockLayer(const wchar_t* layer) {
    const std::wstring pattern = layerNamePattern(layer);
    return kcedCommand(RTSTR, L"_.-Layer", RTSTR, L"_U", RTSTR, pattern.c_str(), RTSTR, L"", RTNONE);
}

}  // namespace

void LayLck() {
    LayerCommandFrame frame;
    const CString prompt = layerText(LayerResourceIds::kLockPickPrompt);
    CString summary = layerText(LayerResourceIds::kLockedSummary);
    bool anyLocked = false;
    while (true) {
        wchar_t layer[kLayerNameSize] = {};
        const PickResult pick = pickLayer(prompt, layer);
        if (pick == PickResult::Ended) break;
        if (pick == PickResult::Missed) {
            printLayerText(LayerResourceIds::kNothingSelected);
            continue;
        }
        if (lockLayer(layer) != RTNORM) continue;
        anyLocked = true;
        refreshLayerControl();
        printText(layerText(LayerResourceIds::kLockedLayer) + L" " + layer);
        // A plain substring test: a name that is part of the summary already is not added
        // again, even when it is only the tail of another name (deliberate).
        if (summary.Find(layer) < 0) summary += CString(L" ") + layer;
    }
    if (anyLocked) printText(summary);
}

void LayUlk() {
    LayerCommandFrame frame;
    const CString prompt = layerText(LayerResourceIds::kUnlockPickPrompt);
    while (true) {
        wchar_t layer[kLayerNameSize] = {};
        kcad_name entity = {0, 0};
        kcad_point pickPoint = {0, 0, 0};
        const int status = kcedEntSel(prompt, entity, pickPoint);
        if (status == RTCAN) return;
        // Any other failure, Enter included, counts as nothing selected.
        if (status != RTNORM || !GetObjLayer(entity, layer, kLayerNameSize)) {
            printLayerText(LayerResourceIds::kNothingSelected);
            continue;
        }
        if (unlockLayer(layer) != RTNORM) continue;
        refreshLayerControl();
        CString message;
        message.Format(layerText(LayerResourceIds::kUnlockedLayer), layer);
        printText(message);
        return;
    }
}
