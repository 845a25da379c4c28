// Dialog input and output through the editor's input queue and command line.
#include "runtime/dialogs/DialogEnvironment.h"

#include <QtGlobal>

#include <cwctype>
#include <mutex>

#include "editor/CommandLine.h"
#include "editor/InputQueue.h"
#include "fonts/GuiApplication.h"

namespace korva::runtime {

bool canUseWidgets() { return fonts::guiAvailable(); }

bool personAtDisplay() {
    return canUseWidgets() && fonts::hasDisplay() && editor::InputQueue::instance().isInteractive();
}

bool readDialogAnswer(const std::wstring& prompt, std::wstring& answer) {
    if (!editor::InputQueue::instance().nextLine(answer, prompt)) {
        echoDialogAnswer(prompt, L"*Cancel*");
        answer.clear();
        return false;
    }
    echoDialogAnswer(prompt, answer);
    return true;
}

void echoDialogAnswer(const std::wstring& prompt, const std::wstring& answer) {
    editor::CommandLine& line = editor::CommandLine::instance();
    line.prompt(prompt);
    line.echoInput(answer);
}

void printDialogMessage(const std::wstring& text) { editor::CommandLine::instance().print(L"\n" + text + L"\n"); }

namespace {

std::mutex quietMutex;
int quietDepth = 0;
QtMessageHandler handlerBeforeQuiet = nullptr;

void dropHintWarnings(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtWarningMsg && message.startsWith(QLatin1String("This plugin does not support"))) return;
    QtMessageHandler next = nullptr;
    {
        std::lock_guard lock(quietMutex);
        next = handlerBeforeQuiet;
    }
    if (next) next(type, context, message);
}

}  // namespace

QuietOffscreenWarnings::QuietOffscreenWarnings() {
    std::lock_guard lock(quietMutex);
    if (quietDepth++ == 0) handlerBeforeQuiet = qInstallMessageHandler(dropHintWarnings);
}

QuietOffscreenWarnings::~QuietOffscreenWarnings() {
    std::lock_guard lock(quietMutex);
    if (--quietDepth == 0) qInstallMessageHandler(handlerBeforeQuiet);
}

QString qtText(std::wstring_view text) { return QString::fromWCharArray(text.data(), static_cast<int>(text.size())); }

std::wstring wideText(const QString& text) { return text.toStdWString(); }

std::wstring trimmed(std::wstring_view text) {
    while (!text.empty() && std::iswspace(static_cast<wint_t>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::iswspace(static_cast<wint_t>(text.back()))) text.remove_suffix(1);
    return std::wstring(text);
}

}  // namespace korva::runtime
