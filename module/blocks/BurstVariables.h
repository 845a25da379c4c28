// The three system variables BURST silences while it works (CMDECHO, BLIPMODE
// and EXPERT): saved and set to 0 on construction, written back on
// destruction. Unlike the shared guards, this one can be told to leave the
// current values in place, because a cancelled BURST deliberately ends
// without restoring them.
#pragma once

#include <array>

#include "kcadstd.h"

class BurstVariables {
public:
    BurstVariables();
    ~BurstVariables();
    BurstVariables(const BurstVariables&) = delete;
    BurstVariables& operator=(const BurstVariables&) = delete;

    // The cancel path: the variables keep the values BURST gave them.
    void keepCurrentValues() { m_restore = false; }

private:
    struct Saved {
        const wchar_t* name;
        resbuf value;  // as the host gave it, so the restore writes the same record type
        bool read;
    };

    std::array<Saved, 3> m_saved;
    bool m_restore = true;
};
