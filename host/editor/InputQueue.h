// InputQueue: the one queue every prompt reads from. Sources are read in order
// (a script, then --eval texts, then a terminal); when all are used up every
// prompt gets the end of input, which cancels what waits. A scripted host
// command runs with its own source (its arguments) for its thread.
#pragma once

#include <deque>
#include <memory>
#include <string>

#include "editor/InputSource.h"

namespace korva::editor {

class InputQueue {
public:
    static InputQueue& instance();

    void addSource(std::unique_ptr<InputSource> source);
    void clear();

    InputToken next(const InputRequest& request);
    bool nextLine(std::wstring& line, const std::wstring& prompt);
    // The next whole line without consuming it; false at the end of all input.
    bool peekLine(std::wstring& line, const std::wstring& prompt);
    // Whether the answers come from a person at a terminal (for dialogs and prompts).
    bool isInteractive();
    // A prompt refused the last answer (see InputSource::onRejected).
    void rejected();

    // A source that replaces the queue for the calling thread (null: the queue again).
    static void setThreadSource(InputSource* source);
    static InputSource* threadSource();

private:
    InputSource* current();
    std::deque<std::unique_ptr<InputSource>> sources_;
};

}  // namespace korva::editor
