// LAYON and LAYTHW: every layer on, or every layer thawed, through the host's
// -LAYER command with the name pattern "*". LAYON reports only when the host
// command succeeded; LAYTHW always reports, with its text taken from the
// module's resource library handle itself.
#include "framework/CommandHandlers.h"
#include "framework/ModuleResources.h"
#include "kced.h"
#include "layers/LayerCommandFrame.h"
#include "layers/LayerResourceIds.h"
#include "layers/LayerTexts.h"

using namespace KvLayers;

void LayOn() {
    LayerCommandFrame frame;
    const int status = kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_On", RTSTR, L"*", RTSTR, L"", RTNONE);
    if (status != RTNORM) return;
    kcedRedraw(nullptr, 0);
    printLayerText(LayerResourceIds::kAllLayersOn);
}

void Laythw() {
    LayerCommandFrame frame;
    kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_T", RTSTR, L"*", RTSTR, L"", RTNONE);
    printText(loadStringFrom(hLibModule, LayerResourceIds::kAllLayersThawed));
}
