// The host's main frame (kcedGetKcadFrame): the parent of module dialogs and the
// window modules post commands to. The headless host has no main window; the
// frame records what is posted so that host code and tests can see it, and has
// a widget (never shown) only when there is a display.
#pragma once

#include <vector>

#include "kcwindows.h"

class QWidget;

namespace korva::runtime {

struct PostedMessage {
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    bool operator==(const PostedMessage&) const = default;
};

// Everything posted to the frame so far, oldest first.
std::vector<PostedMessage> postedFrameMessages();
void clearPostedFrameMessages();

// The frame's widget, the parent of dialogs; null without a display.
QWidget* frameWidget();

}  // namespace korva::runtime
