// The host's one Qt application object. Fonts, dialogs and pictures need it; it
// is created on the main thread at start-up, offscreen when there is no display.
#pragma once

namespace korva::fonts {

class GuiApplication {
public:
    // Creates the application unless one exists already.
    GuiApplication();
    ~GuiApplication();
    GuiApplication(const GuiApplication&) = delete;
    GuiApplication& operator=(const GuiApplication&) = delete;
};

// Whether Qt can be used from the calling thread (an application exists and this
// is its thread).
bool guiAvailable();
// Whether windows are shown to a person (a display, not the offscreen platform).
bool hasDisplay();

}  // namespace korva::fonts
