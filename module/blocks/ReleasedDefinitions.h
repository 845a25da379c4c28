// The attribute definitions an explosion leaves behind. BURST notes every
// ATTDEF in the drawing before it explodes anything; afterwards every ATTDEF
// that was not there before came out of an exploded block and is deleted, while
// those the drawing already held survive.
#pragma once

#include "framework/SelectionUtils.h"

class ReleasedDefinitions {
public:
    // Notes the attribute definitions now in the drawing.
    ReleasedDefinitions();
    ReleasedDefinitions(const ReleasedDefinitions&) = delete;
    ReleasedDefinitions& operator=(const ReleasedDefinitions&) = delete;

    // Deletes every attribute definition that was not there when this was made.
    void deleteReleased();

private:
    SelectionSetGuard m_before;  // stays {0, 0} when the drawing held none
};
