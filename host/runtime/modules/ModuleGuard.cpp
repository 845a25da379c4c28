// Reporting exceptions that left module code.
#include "runtime/modules/ModuleGuard.h"

#include <exception>

#include "db/Utf8.h"
#include "editor/CommandLine.h"

namespace korva::runtime {

void reportModuleException(std::wstring_view module, std::wstring_view activity, std::wstring_view reason) {
    std::wstring text = L"\n** ";
    text += module;
    text += L": an exception left ";
    text += activity;
    text += L": ";
    text += reason;
    text += L" **\n";
    editor::CommandLine::instance().print(text);
}

std::wstring currentExceptionReason() {
    try {
        throw;
    } catch (const std::exception& error) {
        return db::utf8ToWide(error.what());
    } catch (...) {
        return L"an exception of an unknown type";
    }
}

}  // namespace korva::runtime
