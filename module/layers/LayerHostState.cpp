// Host state reads for the layer commands.
#include "layers/LayerHostState.h"

#include <cstdlib>

#include "kced.h"
#include "kcmfc.h"

namespace KvLayers {

namespace {

constexpr short kErrnoPickMissed = 7;
constexpr WPARAM kLayerControlCommandId = 10683;

}  // namespace

bool lastPickMissed() {
    resbuf value{};
    if (kcedGetVar(L"ERRNO", &value) != RTNORM) return false;
    if (value.restype == RTSTR) {
        free(value.resval.rstring);
        return false;
    }
    if (value.restype == RTLONG) return value.resval.rlong == kErrnoPickMissed;
    return value.restype == RTSHORT && value.resval.rint == kErrnoPickMissed;
}

bool currentLayerName(std::wstring& layer) {
    resbuf value{};
    if (kcedGetVar(L"CLAYER", &value) != RTNORM) return false;
    if (value.restype != RTSTR || !value.resval.rstring) return false;
    layer = value.resval.rstring;
    free(value.resval.rstring);
    return true;
}

void refreshLayerControl() {
    if (CWnd* frame = kcedGetKcadFrame()) frame->PostMessage(WM_COMMAND, kLayerControlCommandId, 0);
}

}  // namespace KvLayers
