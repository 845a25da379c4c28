// SetCurLayer, the body of LAYCUR1: the layer of the first selected object
// becomes current. RTNORM when the current layer changed, 0 when nothing was
// selected, otherwise the failing status.
#pragma once

int SetCurLayer();
