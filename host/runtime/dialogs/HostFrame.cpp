// The frame window: a CWnd whose PostMessage is recorded. Commands may post from
// the threads of scripted host commands, hence the lock.
#include "runtime/dialogs/HostFrame.h"

#include <QWidget>

#include <mutex>

#include "fonts/GuiApplication.h"
#include "kcmfc.h"
#include "runtime/dialogs/DialogEnvironment.h"

namespace korva::runtime {

namespace {

class HostFrame final : public CWnd {
public:
    BOOL PostMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        std::lock_guard lock(mutex_);
        posted_.push_back({message, wParam, lParam});
        return TRUE;
    }

    std::vector<PostedMessage> posted() {
        std::lock_guard lock(mutex_);
        return posted_;
    }
    void clearPosted() {
        std::lock_guard lock(mutex_);
        posted_.clear();
    }

    // The widget is made once, on the Qt thread, when there is a display. It is
    // never deleted: it lives as long as the application, and a static destructor
    // would run after the application is gone.
    QWidget* ensureWidget() {
        if (!m_widget && canUseWidgets() && fonts::hasDisplay()) {
            m_widget = new QWidget;
            m_widget->setObjectName(QStringLiteral("KorvaFrame"));
            m_widget->setWindowTitle(QStringLiteral("Korva"));
        }
        return m_widget;
    }

private:
    std::mutex mutex_;
    std::vector<PostedMessage> posted_;
};

HostFrame& hostFrame() {
    static HostFrame frame;
    return frame;
}

}  // namespace

std::vector<PostedMessage> postedFrameMessages() { return hostFrame().posted(); }
void clearPostedFrameMessages() { hostFrame().clearPosted(); }
QWidget* frameWidget() { return hostFrame().ensureWidget(); }

}  // namespace korva::runtime

CWnd* kcedGetKcadFrame() {
    korva::runtime::frameWidget();
    return &korva::runtime::hostFrame();
}
