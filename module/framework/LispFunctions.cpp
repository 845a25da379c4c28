// LISP dispatch. Rows 0 and 1 of the function table stay in the table but are
// never defined, so the host only ever asks for code 2 through this path.
#include "framework/LispFunctions.h"

#include "framework/ModuleResources.h"
#include "kcdbfuncs.h"
#include "kcedcommands.h"
#include "kcut.h"

namespace {
constexpr int kHighestFunctionCode = 2;
constexpr UINT kRefEditNoticeId = 6650;
}  // namespace

const KvLispFunction func_table[3] = {
    {L"C:CAL", 6120, cal2},
    {L"CAL", 6121, cal2},
    {L"ai_refedit_alert", 6275, ai_refedit_alert},
};

int funcload() {
    const KvLispFunction& alert = func_table[2];
    const CString localName = LoadLocalCmd(alert.localNameId);
    kcedDefunEx(alert.name, localName, 2);
    return RTNORM;
}

int dofun() {
    const int code = kcedGetFunCode();
    if (code < 0 || code > kHighestFunctionCode) {
        kcdbFail(L"Incorrect function code.");
        return RTERROR;
    }
    resbuf* arguments = kcedGetArgs();
    const int status = func_table[code].handler(arguments);
    kcutRelRb(arguments);
    return status;
}

int ai_refedit_alert(resbuf*) {
    CKcModuleResourceOverride resources(hLibModule);
    __ResourceString notice(kRefEditNoticeId, L"");
    kcutPrintf(L"%ls", static_cast<const wchar_t*>(notice));
    return 0;
}

int cal2(resbuf*) { return RTERROR; }
