// TCASE: select texts, multiline texts and attribute definitions, let the case
// dialog convert them, and free the selection whatever the dialog ended with.
// The whole run uses the module's resource library.
#include "framework/CommandHandlers.h"
#include "framework/ModuleResources.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcmfc.h"
#include "kcut.h"
#include "text/KvExtendTextToolCtx.h"
#include "text/TcaseDlg.h"

namespace {

constexpr UINT kSelectTextsPrompt = 2621;
constexpr UINT kNoTextsSelected = 2623;

// Frees the selection set when the command leaves, after OK and Cancel alike.
class SelectionRelease {
public:
    explicit SelectionRelease(kcad_name& set) : m_set(set) {}
    ~SelectionRelease() {
        if (m_set[0] != 0 || m_set[1] != 0) kcedSSFree(m_set);
    }
    SelectionRelease(const SelectionRelease&) = delete;
    SelectionRelease& operator=(const SelectionRelease&) = delete;

private:
    kcad_name& m_set;
};

void printResourceString(UINT id) { kcutPrintf(L"%s", static_cast<const wchar_t*>(__ResourceString(id, L""))); }

}  // namespace

void Tcase() {
    CKvExtendTextToolCtx context;
    context.cmd_TCASE();
}

int CKvExtendTextToolCtx::cmd_TCASE() {
    CKcModuleResourceOverride resources(hLibModule);
    printResourceString(kSelectTextsPrompt);

    kcad_name selection = {0, 0};
    const int status = SelectCase(selection);
    SelectionRelease release(selection);
    if (status != RTNORM) {
        printResourceString(kNoTextsSelected);
        return status;
    }
    TcaseDlg dialog(kcedGetKcadFrame(), selection);
    dialog.DoModal();
    return status;
}

int CKvExtendTextToolCtx::SelectCase(kcad_name& selectionSet) {
    resbuf* filter = kcutBuildList(-4, L"<or",                                   //
                                   -4, L"<and", RTDXF0, L"TEXT", -4, L"and>",    //
                                   -4, L"<and", RTDXF0, L"MTEXT", -4, L"and>",   //
                                   -4, L"<and", RTDXF0, L"ATTDEF", -4, L"and>",  //
                                   -4, L"or>", RTNONE);
    if (!filter) return RTERROR;
    const int status = kcedSSGet(nullptr, nullptr, nullptr, filter, selectionSet);
    kcutRelRb(filter);
    return status;
}
