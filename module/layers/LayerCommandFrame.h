// The frame every layer state command runs in: the module's resource library
// is current, and CMDECHO, BLIPMODE and EXPERT are saved and set to 0 for the
// whole run; leaving the scope (normal end, cancel, failure) restores them.
#pragma once

#include "framework/ModuleResources.h"
#include "framework/SysVarGuards.h"

namespace KvLayers {

class LayerCommandFrame {
public:
    LayerCommandFrame();
    LayerCommandFrame(const LayerCommandFrame&) = delete;
    LayerCommandFrame& operator=(const LayerCommandFrame&) = delete;

private:
    // Members are destroyed in reverse order: EXPERT, BLIPMODE, CMDECHO, then the resources.
    CKcModuleResourceOverride m_resources;
    IntVarHolder m_cmdEcho;
    IntVarHolder m_blipMode;
    IntVarHolder m_expert;
};

}  // namespace KvLayers
