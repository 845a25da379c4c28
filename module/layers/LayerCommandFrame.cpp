// LayerCommandFrame: saves the three variables first, then sets each to 0. A
// variable the host refuses to set keeps its value; the command still runs.
#include "layers/LayerCommandFrame.h"

namespace KvLayers {

LayerCommandFrame::LayerCommandFrame()
    : m_resources(hLibModule), m_cmdEcho(L"CMDECHO"), m_blipMode(L"BLIPMODE"), m_expert(L"EXPERT") {
    m_cmdEcho.SetValue(0);
    m_blipMode.SetValue(0);
    m_expert.SetValue(0);
}

}  // namespace KvLayers
