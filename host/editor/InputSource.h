// Where input comes from: a script, texts given on the command line, a terminal,
// or the arguments of a scripted host command.
#pragma once

#include <string>

#include "editor/InputToken.h"

namespace korva::editor {

class InputSource {
public:
    virtual ~InputSource() = default;
    // The next answer for a prompt.
    virtual InputToken next(const InputRequest& request) = 0;
    // The next whole line (dialog actions, a file dialog's path); false when none is left.
    virtual bool nextLine(std::wstring& line, const std::wstring& prompt) = 0;
    // The line nextLine would give, left in place (a dialog reads only the lines
    // meant for it); false when none is left or the source cannot look ahead.
    virtual bool peekLine(std::wstring& line, const std::wstring& prompt) {
        (void)line;
        (void)prompt;
        return false;
    }
    virtual bool isInteractive() const { return false; }
    // A prompt refused the last answer and asks again. Scripted host commands
    // give up then instead of reading their next argument.
    virtual void onRejected() {}
};

}  // namespace korva::editor
