// The text-tool command context: one stack object per run of a text command.
// A command function builds it, calls the member named after its command
// (cmd_ followed by the command name) and destroys it. Each command's member
// lives in a source file of its own; values a command keeps for the module's
// lifetime belong in static members here, next to the command that uses them.
#pragma once

#include "kcadstd.h"

class CKvExtendTextToolCtx {
public:
    CKvExtendTextToolCtx() = default;
    ~CKvExtendTextToolCtx() = default;
    CKvExtendTextToolCtx(const CKvExtendTextToolCtx&) = delete;
    CKvExtendTextToolCtx& operator=(const CKvExtendTextToolCtx&) = delete;

    // TCASE: changes the letter case of selected texts, multiline texts and
    // attribute definitions in the mode chosen in its dialog; the status of the selection.
    int cmd_TCASE();

private:
    // Interactive selection of TEXT, MTEXT and ATTDEF entities; the status of kcedSSGet.
    static int SelectCase(kcad_name& selectionSet);
};
