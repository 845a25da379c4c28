// LISP functions of modules. A module defines a function for the current
// document with kcedDefunEx (during message 3, once per document). When a LISP
// expression calls it, the host makes its code and a copy of its arguments
// available to kcedGetFunCode/kcedGetArgs, sends message 5 to the module that
// defined it, and takes the result the module set with kcedRet* (nil when it
// set none). Definitions go with their document and with their module.
#pragma once

#include <string>
#include <string_view>

#include "editor/LispValue.h"
#include "kcadstd.h"

namespace korva::editor {
class Document;
}

namespace korva::runtime {

class LoadedModule;

// Makes the editor's LISP call module functions (start-up).
void installModuleLispFunctions();

// Whether the current document has a module function of that name (without regard to case).
bool isModuleLispFunction(std::wstring_view name);
// Calls a module function of the current document; false with the reason when
// there is none or the module failed.
bool callModuleLispFunction(std::wstring_view name, const resbuf* arguments, editor::LispValue& result,
                            std::wstring& error);

void forgetLispFunctionsOf(const LoadedModule& module);
void forgetLispFunctionsOf(const editor::Document& document);

}  // namespace korva::runtime

// Test entry: calls a module function of the current document with a copy of
// `args`; RTNORM with the result (one value as a chain, owned by the caller) in
// *result, or RTERROR when there is no such function or it failed.
int hostInvokeLisp(const wchar_t* functionName, const resbuf* args, resbuf** result);
