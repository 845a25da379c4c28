// LAYMCH and -LAYMCH (one handler, one form): the selected objects, those on
// locked layers left out, take the layer of one picked destination object.
// A pick that hits nothing asks again; Enter or cancel ends without changes.
#include "framework/CommandHandlers.h"
#include "framework/SelectionUtils.h"
#include "kced.h"
#include "layers/LayerCommandFrame.h"
#include "layers/LayerHostState.h"
#include "layers/LayerResourceIds.h"
#include "layers/LayerRoutines.h"
#include "layers/LayerTexts.h"

using namespace KvLayers;

namespace {

// The layer of the destination object; false when the user ended the pick.
bool pickDestinationLayer(wchar_t* layer) {
    const CString prompt = layerText(LayerResourceIds::kMatchPickPrompt);
    while (true) {
        kcedInitGet(0, nullptr);
        kcad_name entity = {0, 0};
        kcad_point pickPoint = {0, 0, 0};
        const int status = kcedEntSel(prompt, entity, pickPoint);
        if (status == RTERROR && lastPickMissed()) continue;
        if (status != RTNORM) return false;
        if (GetObjLayer(entity, layer, kLayerNameSize)) return true;
    }
}

}  // namespace

void LayMch() {
    LayerCommandFrame frame;
    printLayerText(LayerResourceIds::kMatchSelectPrompt);
    SelectionSetGuard selection;
    if (kcedSSGet(L":L", nullptr, nullptr, nullptr, selection.name()) != RTNORM) return;
    wchar_t layer[kLayerNameSize] = {};
    if (!pickDestinationLayer(layer)) return;
    Kcad::Int32 length = 0;
    if (kcedSSLength(selection.name(), &length) != RTNORM) return;
    for (Kcad::Int32 index = 0; index < length; ++index) {
        kcad_name entity = {0, 0};
        if (kcedSSName(selection.name(), index, entity) == RTNORM) mod_ent_layer(entity, layer);
    }
    selection.free();
    CString message;
    message.Format(layerText(LayerResourceIds::kMatchResult), static_cast<int>(length), layer);
    printText(message);
}
