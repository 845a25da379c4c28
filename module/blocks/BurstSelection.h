// The selection step of BURST: the pick-first set taken as it is when
// PICKFIRST is 1 and one exists, otherwise an interactive selection cut down
// to block references that are not external references, with the counts
// reported on the command line.
#pragma once

#include "kcadstd.h"

// Fills selection (a set the caller frees; it stays {0, 0} when nothing was
// selected). The pick-first set is cleared in any case. RTCAN when the user
// cancelled the selection prompt, RTNORM otherwise (an empty selection included).
int selectReferencesToBurst(kcad_name selection);
