// Entry point shared by every test binary. Texts are measured with real fonts
// in every test, as in the host: the Qt application comes first (offscreen,
// as tests have no display), then the font measurer.
#include <gtest/gtest.h>

#include <cstdlib>

#include "fonts/FontMetrics.h"
#include "fonts/GuiApplication.h"
#include "fonts/LeakSuppressions.h"

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);  // keeps a value that is set
    ::testing::InitGoogleTest(&argc, argv);
    korva::fonts::GuiApplication application;
    korva::fonts::installFontMetrics();
    return RUN_ALL_TESTS();
}
