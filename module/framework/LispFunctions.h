// The module's LISP-callable functions: the function table, its definition
// for each drawing (funcload) and the dispatch of a call (dofun).
#pragma once

#include "kcadstd.h"

struct KvLispFunction {
    const wchar_t* name;
    unsigned int localNameId;
    int (*handler)(resbuf* arguments);
};

extern const KvLispFunction func_table[3];

// Defines "ai_refedit_alert" (code 2) for the current drawing; RTNORM.
int funcload();
// Runs the function the host is invoking; its status, or RTERROR for an unknown code.
int dofun();

// Prints the notice that a command cannot run while a reference is edited in place; 0.
int ai_refedit_alert(resbuf* arguments);
// The calculator functions of rows 0 and 1: never defined, so never called; RTERROR.
int cal2(resbuf* arguments);
