// LAYOFF: turns off the layers of picked objects, one pick after another,
// until cancel, Enter or "eXit". "Options" chooses how a pick inside block
// references is resolved (LayOffLayerChoice.h); the choice (nOp) lasts for the
// process and starts at Block. The screen is redrawn at the end.
#include <cwchar>

#include "framework/CommandHandlers.h"
#include "framework/ResbufUtils.h"
#include "kced.h"
#include "layers/LayOffLayerChoice.h"
#include "layers/LayerCommandFrame.h"
#include "layers/LayerHostState.h"
#include "layers/LayerNames.h"
#include "layers/LayerResourceIds.h"
#include "layers/LayerRoutines.h"
#include "layers/LayerTexts.h"

using namespace KvLayers;

namespace {

// The block-selection nesting mode: 1 Entity, 2 Block, 3 None. Never persisted.
int nOp = kNestingBlock;

constexpr size_t kInputSize = 512;

UINT nestingPromptId() {
    if (nOp == kNestingBlock) return LayerResourceIds::kNestingPromptBlock;
    if (nOp == kNestingEntity) return LayerResourceIds::kNestingPromptEntity;
    return LayerResourceIds::kNestingPromptNone;
}

// The options prompt; false when the whole command is to end (cancel).
bool askNestingMode() {
    const CString keywords = layerKeywords(LayerResourceIds::kNestingKeywords, L"Entity Block None");
    while (true) {
        kcedInitGet(RSG_OTHER, keywords);
        wchar_t answer[kInputSize] = {};
        const int status = kcedGetKword(layerText(nestingPromptId()), answer, kInputSize);
        if (status == RTNONE) return true;  // Enter keeps the mode
        if (status != RTNORM) return false;
        switch (answer[0]) {
            case L'E':
            case L'e': nOp = kNestingEntity; return true;
            case L'B':
            case L'b': nOp = kNestingBlock; return true;
            case L'N':
            case L'n': nOp = kNestingNone; return true;
            default: break;  // any other answer asks again
        }
    }
}

// A keyword or other text at the pick prompt; false when the command is to end.
bool handleTypedInput() {
    wchar_t input[kInputSize] = {};
    if (kcedGetInput(input, kInputSize) != RTNORM) return false;
    if (sameLayerName(input, L"eXit")) return false;
    if (sameLayerName(input, L"Options")) return askNestingMode();
    return true;  // any other text: pick again
}

// One pick and what follows it; false when the command is to end.
bool pickAndTurnOff(const CString& keywords, const CString& prompt) {
    kcedInitGet(RSG_OTHER, keywords);
    kcad_name entity = {0, 0};
    kcad_point pickPoint = {0, 0, 0};
    kcad_matrix xform = {};
    resbuf* containerList = nullptr;
    const int status = kcedNEntSelP(prompt, entity, pickPoint, 0, xform, &containerList);
    ResbufChain containers(containerList);
    if (status == RTKWORD) return handleTypedInput();
    if (status == RTERROR) return lastPickMissed();
    if (status != RTNORM) return false;
    wchar_t layer[kLayerNameSize] = {};
    if (!ChooseLayOffLayer(nOp, entity, containers.get(), layer, kLayerNameSize)) return true;
    return OffOneLayer(layer) != RTCAN;
}

}  // namespace

void LayOff() {
    LayerCommandFrame frame;
    const CString keywords = layerKeywords(LayerResourceIds::kLayOffKeywords, L"Options eXit");
    const CString prompt = layerText(LayerResourceIds::kLayOffPickPrompt);
    while (pickAndTurnOff(keywords, prompt)) {
    }
    kcedRedraw(nullptr, 0);
}
