// CommandFiber: a host command run for kcedCommand. The command runs on a thread
// of its own that takes turns with the caller: it reads the call's arguments as
// its input, and when they run out while it still waits for input, control goes
// back to the caller (the command stays pending) until the next kcedCommand call
// gives more input or the host cancels it. Only one side runs at any time, so the
// drawing is never touched concurrently.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "editor/InputSource.h"

namespace korva::editor {

class CommandFiber {
public:
    enum class Outcome { Finished, Waiting, Cancelled, Refused };

    explicit CommandFiber(std::function<void()> body);
    ~CommandFiber();
    CommandFiber(const CommandFiber&) = delete;
    CommandFiber& operator=(const CommandFiber&) = delete;

    // Gives the command more input and lets it run until it ends or waits again.
    Outcome run(std::vector<InputToken> input);
    // Cancels a waiting command and waits for it to end.
    void cancel();
    bool isWaiting() const { return state_ == State::Waiting; }

private:
    class ArgumentSource;
    enum class State { NotStarted, Running, Waiting, Finished };

    // Called on the fiber's thread when its input is used up.
    void suspend(std::unique_lock<std::mutex>& lock);
    void handOver(std::unique_lock<std::mutex>& lock);

    std::function<void()> body_;
    std::unique_ptr<ArgumentSource> source_;
    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable turn_;
    bool fiberTurn_ = false;
    State state_ = State::NotStarted;
    std::deque<InputToken> input_;
    bool cancelled_ = false;
    bool refused_ = false;
};

}  // namespace korva::editor
