// The "Select objects:" dialogue of interactive selections. Each answer is one
// step: a point picks the entity under it; W and C ask for two corners; WP, CP
// and F for polygon or fence points until Enter; ALL, L (last) and P (previous)
// take those entities; R switches to removing and A back to adding; U undoes
// the last step; an entity name or a selection set given as a value adds those
// entities. Each step reports "N found". Enter ends the selection.
//
// With keywords (":K"), a typed keyword goes to the installed keyword callback,
// which may prompt itself: the selection so far lives in this dialogue, which
// those nested prompts do not touch.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "db/ObjectRecord.h"
#include "editor/Keywords.h"
#include "editor/selection/SelectionRules.h"
#include "editor/selection/SelectionView.h"
#include "kced.h"

namespace korva::editor {

struct InteractiveOptions {
    std::wstring addPrompt = L"\nSelect objects: ";
    std::wstring removePrompt = L"\nRemove objects: ";
    std::optional<Keywords> keywords;  // ":K"
    bool single = false;               // ":S": the first step that finds something ends it
};

// RTNORM with the entities in the order they were added, RTERROR when nothing
// was selected, RTCAN on cancel.
int selectInteractively(const SelectionView& view, const InteractiveOptions& options, SelectionRules& rules,
                        std::vector<db::ObjectRecord*>& result);

// The keyword callback of ":K" selections (kcedSSSetKwordCallbackPtr).
KcEdSSKwordCallback& selectionKeywordCallback();

// The entities the "L" option and mode take: the last entity of the view's space that the rules accept.
std::vector<db::ObjectRecord*> lastEntity(const SelectionView& view, SelectionRules& rules);
// The entities of the previous selection that still exist and pass the filter.
std::vector<db::ObjectRecord*> previousEntities(const SelectionView& view, SelectionRules& rules);
// The "ALL" option: every entity of the view's space not on a frozen layer that passes the filter.
std::vector<db::ObjectRecord*> allEntities(const SelectionView& view, SelectionRules& rules);

}  // namespace korva::editor
