// The one Qt application, the thread checks, and what Qt needs from the
// environment to start quietly.
#include "fonts/GuiApplication.h"

#include <QApplication>
#include <QThread>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "fonts/FontFace.h"

namespace korva::fonts {

namespace {

// Qt wants a private runtime folder and warns on every start without one (a
// console or container session has none): give it the folder it would fall back to.
void provideRuntimeFolder() {
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime && *runtime) return;
    std::error_code error;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path(error) / ("runtime-" + std::to_string(::getuid()));
    if (error) return;
    std::filesystem::create_directory(folder, error);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
    if (!error) ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 0);
}

std::unique_ptr<QApplication>& ownedApplication() {
    static std::unique_ptr<QApplication> application;
    return application;
}

}  // namespace

GuiApplication::GuiApplication() {
    if (QCoreApplication::instance()) return;
    // Without a display the offscreen platform still gives fonts, painting and widgets.
    if (!std::getenv("QT_QPA_PLATFORM") && !std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    }
    provideRuntimeFolder();
    static int argc = 1;
    static char name[] = "korva";
    static char* argv[] = {name, nullptr};
    ownedApplication() = std::make_unique<QApplication>(argc, argv);
}

GuiApplication::~GuiApplication() {
    // This thread's font engines go before the application that made them.
    if (ownedApplication()) releaseThreadFonts();
    ownedApplication().reset();
}

bool guiAvailable() {
    const QCoreApplication* application = QCoreApplication::instance();
    return application && application->thread() == QThread::currentThread();
}

bool hasDisplay() {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) return false;
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

}  // namespace korva::fonts
