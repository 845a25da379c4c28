// Under LeakSanitizer: Qt's offscreen platform keeps its screen and plugin
// objects until the process ends, and the sanitizer reports them as leaks at
// exit (failing every program that started Qt). The sanitizer looks for its
// suppressions in the executable, so each program's main file includes this
// header, once. Allocations made by our own code still report.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
// Quiet about the suppressions used: programs' output is checked exactly.
extern "C" const char* __lsan_default_options() { return "print_suppressions=0"; }

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libQt5Core.so\n"
           "leak:libQt5Gui.so\n"
           "leak:libQt5Widgets.so\n"
           "leak:libqoffscreen.so\n"
           "leak:libfontconfig.so\n";
}
#endif
