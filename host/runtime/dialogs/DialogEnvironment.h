// Where a dialog meets the command line: whether widgets can be made on this
// thread, whether a person sits at a display (then dialogs are shown and wait),
// and otherwise the input lines that answer dialogs, echoed like prompt answers.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace korva::runtime {

// Qt widgets can be made and used from the calling thread.
bool canUseWidgets();
// A person at a terminal with a display: dialogs are shown and wait for them.
// Otherwise dialogs read their answers from the input, one line each.
bool personAtDisplay();

// Reads the next input line as the answer to `prompt` and echoes it like an
// answered prompt; false at the end of the input (echoed as a cancel).
bool readDialogAnswer(const std::wstring& prompt, std::wstring& answer);
// Echoes a line read for a dialog after its prompt.
void echoDialogAnswer(const std::wstring& prompt, const std::wstring& answer);
// A message of a dialog on the command line, on a line of its own.
void printDialogMessage(const std::wstring& text);

// While one exists, the offscreen platform's warnings about window hints it
// cannot apply (printed on every dialog shown without a screen) are dropped.
class QuietOffscreenWarnings {
public:
    QuietOffscreenWarnings();
    ~QuietOffscreenWarnings();
    QuietOffscreenWarnings(const QuietOffscreenWarnings&) = delete;
    QuietOffscreenWarnings& operator=(const QuietOffscreenWarnings&) = delete;
};

QString qtText(std::wstring_view text);
std::wstring wideText(const QString& text);
std::wstring trimmed(std::wstring_view text);

}  // namespace korva::runtime
