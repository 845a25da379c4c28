// The boundary between host and module code: whatever a module throws out of
// its entry point, a command handler or a LISP function is caught here and
// reported on the command line, and the host keeps running.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace korva::runtime {

// Reports an exception that left module code: who threw, doing what, and why.
void reportModuleException(std::wstring_view module, std::wstring_view activity, std::wstring_view reason);
// The reason of the exception being handled (call inside a catch block).
std::wstring currentExceptionReason();

// Runs module code; false when it threw (the exception is reported).
template <class Call>
bool guardModuleCall(std::wstring_view module, std::wstring_view activity, Call&& call) {
    try {
        std::forward<Call>(call)();
        return true;
    } catch (...) {
        reportModuleException(module, activity, currentExceptionReason());
        return false;
    }
}

}  // namespace korva::runtime
