// Small reads and notices around the layer commands' host calls: whether the
// last failed pick hit nothing (ERRNO 7), the current layer's name, and the
// notice that makes the toolbar's layer control show new layer states.
#pragma once

#include <string>

namespace KvLayers {

// True when the last pick that returned RTERROR hit nothing (ERRNO 7); false for
// any other error (Enter, ERRNO 52) or when ERRNO cannot be read.
bool lastPickMissed();
// CLAYER; false when it cannot be read.
bool currentLayerName(std::wstring& layer);
// Posts the host's main frame the command message (273, identifier 10683) that
// refreshes the layer control on the toolbar.
void refreshLayerControl();

}  // namespace KvLayers
