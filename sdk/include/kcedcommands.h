// The command stack modules register their commands in, and the functions of
// the LISP subset that modules define (kcedDefunEx) with their results.
#pragma once

#include "kcrx.h"
#include "kcwindows.h"

typedef void (*KcRxFunctionPtr)();

class KcEdUIContext;
class KcEdCommand;

// Command flags of addCommand.
namespace KcRx {
constexpr Kcad::Int32 kCmdModal = 0x0;
constexpr Kcad::Int32 kCmdUsePickSet = 0x2;
constexpr Kcad::Int32 kCmdRedraw = 0x4;
constexpr Kcad::Int32 kCmdNoPerspective = 0x8;
constexpr Kcad::Int32 kCmdNoTileMode = 0x20;
constexpr Kcad::Int32 kCmdNoBlockEditor = 0x2000000;
}  // namespace KcRx

class KcEdCommandStack : public KcRxObject {
    KCRX_DECLARE_MEMBERS(KcEdCommandStack)
public:
    // Registers a command in a group (created on first use). A global name the group
    // already has gives eDuplicateKey; an empty local name takes the global one.
    virtual Kcad::ErrorStatus addCommand(const wchar_t* groupName, const wchar_t* globalName,
                                         const wchar_t* localName, Kcad::Int32 commandFlags,
                                         KcRxFunctionPtr handler, KcEdUIContext* uiContext = nullptr,
                                         int functionCode = -1, HINSTANCE resourceHandle = nullptr,
                                         KcEdCommand** commandOut = nullptr);
    virtual Kcad::ErrorStatus removeCmd(const wchar_t* groupName, const wchar_t* globalName);
    // Removes every command of the group; eKeyNotFound for a group that does not exist.
    virtual Kcad::ErrorStatus removeGroup(const wchar_t* groupName);

protected:
    KcEdCommandStack() = default;
};

// --- LISP functions defined by modules -------------------------------------------
// Defines a function for the current drawing; the host sends kInvkSubrMsg when it is called.
int kcedDefunEx(const wchar_t* globalName, const wchar_t* localName, int functionCode);
int kcedUndef(const wchar_t* name, int functionCode);
// During kInvkSubrMsg: the code of the function called (RTERROR outside a call) and its
// arguments (owned by the caller, null when there are none).
int kcedGetFunCode();
resbuf* kcedGetArgs();
// The result of the function being called.
int kcedRetVoid();
int kcedRetNil();
int kcedRetT();
int kcedRetInt(int value);
int kcedRetReal(double value);
int kcedRetStr(const wchar_t* value);
int kcedRetPoint(const kcad_point value);
int kcedRetName(const kcad_name value, int type);
int kcedRetList(const resbuf* list);
// Prints "Application ERROR: " and the message on the command line.
int kcdbFail(const wchar_t* message);
