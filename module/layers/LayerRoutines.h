// The layer routines the layer state commands share: reading and replacing an
// entity's layer (DXF group 8), turning one layer off, making a layer current
// through the host's -LAYER command, and reading a nested pick's container list
// (innermost block reference first, outermost last).
#pragma once

#include <cstddef>

#include "kcadstd.h"

// The size of the buffers layer names are read into.
constexpr size_t kLayerNameSize = 500;

// Copies the entity's layer (group 8) into layer (at most size characters with the
// terminator): 1, or 0 when the entity's list or its group 8 is missing.
int GetObjLayer(const kcad_name entity, wchar_t* layer, size_t size);
// Replaces group 8 of the entity's list and writes it back with kcdbEntMod; its status.
int mod_ent_layer(const kcad_name entity, const wchar_t* layer);
// Thaws, makes (creating it when missing) and sets the layer current through
// "_.-LAYER", then sets "clayer" and "CLAYER"; CMDECHO is 0 meanwhile and 1 after
// (deliberately not its earlier value). RTNORM when the layer became current.
int dsc_set_clayer(const wchar_t* layer);
// Turns one layer off; the current layer only after a yes (Enter counts as yes).
// RTCAN when the question was cancelled, RTERROR when it was answered no, else
// RTNORM (also when the host command failed, which prints nothing).
int OffOneLayer(const wchar_t* layer);
// The first (innermost) and the last (outermost) name of a container list:
// RTNORM, or RTERROR when the list holds no name.
int GetFirstNameInBuf(const resbuf* containers, kcad_name name);
int GetLastNameInBuf(const resbuf* containers, kcad_name name);
