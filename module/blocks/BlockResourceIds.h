// The ids of the resource strings the block tools print (texts in the module's
// resource library, "KvExtendRes.dll").
#pragma once

#include "kcwindows.h"

// BURST.
constexpr UINT kNothingSelectedId = 3239;       // nothing left after the locked-layer filter
constexpr UINT kBurstIgnoredObjectsId = 2452;   // "%d" members that were not block references, or xrefs
constexpr UINT kBurstReferenceCountId = 2453;   // "%d" block references to burst
