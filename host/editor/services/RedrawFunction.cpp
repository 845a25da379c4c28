// kcedRedraw. The headless host draws nothing, so a redraw or undraw only
// checks the name; highlighting is kept in the document's highlighted set,
// which commands and tests read.
#include "db/EntityNames.h"
#include "editor/Document.h"
#include "kced.h"

using namespace korva::editor;

namespace {

enum RedrawMode { kRedraw = 1, kUndraw = 2, kHighlight = 3, kUnhighlight = 4 };

}  // namespace

int kcedRedraw(const kcad_name entity, int mode) {
    if (!entity || korva::db::isNullName(entity)) return RTNORM;  // the whole view; the mode does not matter
    const korva::db::ObjectRecord* record = korva::db::recordOf(entity);
    if (!record || !record->isEntity()) return RTERROR;
    if (mode < kRedraw || mode > kUnhighlight) return RTERROR;
    Document* document = record->drawing ? Session::instance().documentOf(*record->drawing) : nullptr;
    if (!document) return RTNORM;  // an entity of a side database has no view to highlight in
    if (mode == kHighlight) document->highlighted().insert(record);
    else if (mode == kUnhighlight) document->highlighted().erase(record);
    return RTNORM;
}
