#include "editor/CommandFiber.h"

#include "editor/InputQueue.h"

namespace korva::editor {

class CommandFiber::ArgumentSource : public InputSource {
public:
    explicit ArgumentSource(CommandFiber& fiber) : fiber_(fiber) {}

    InputToken next(const InputRequest&) override {
        std::unique_lock<std::mutex> lock(fiber_.mutex_);
        while (true) {
            if (fiber_.cancelled_ || fiber_.refused_) return InputToken::cancel();
            if (!fiber_.input_.empty()) {
                InputToken token = std::move(fiber_.input_.front());
                fiber_.input_.pop_front();
                return token;
            }
            fiber_.suspend(lock);
        }
    }

    bool nextLine(std::wstring& line, const std::wstring& prompt) override {
        InputRequest request;
        request.prompt = prompt;
        request.allowSpaces = true;
        const InputToken token = next(request);
        if (token.kind == InputToken::Kind::Text) {
            line = token.text;
            return true;
        }
        line.clear();
        return token.kind == InputToken::Kind::Enter;
    }

    void onRejected() override {
        std::lock_guard<std::mutex> lock(fiber_.mutex_);
        fiber_.refused_ = true;
    }

private:
    CommandFiber& fiber_;
};

CommandFiber::CommandFiber(std::function<void()> body)
    : body_(std::move(body)), source_(std::make_unique<ArgumentSource>(*this)) {}

CommandFiber::~CommandFiber() {
    cancel();
    if (thread_.joinable()) thread_.join();
}

void CommandFiber::suspend(std::unique_lock<std::mutex>& lock) {
    state_ = State::Waiting;
    fiberTurn_ = false;
    turn_.notify_all();
    turn_.wait(lock, [&] { return fiberTurn_; });
    state_ = State::Running;
}

// Lets the fiber run and waits until it is its caller's turn again.
void CommandFiber::handOver(std::unique_lock<std::mutex>& lock) {
    fiberTurn_ = true;
    turn_.notify_all();
    turn_.wait(lock, [&] { return !fiberTurn_; });
}

CommandFiber::Outcome CommandFiber::run(std::vector<InputToken> input) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (state_ == State::Finished) return Outcome::Finished;
    for (InputToken& token : input) input_.push_back(std::move(token));
    if (state_ == State::NotStarted) {
        state_ = State::Running;
        fiberTurn_ = true;
        thread_ = std::thread([this] {
            {
                std::unique_lock<std::mutex> fiberLock(mutex_);
                turn_.wait(fiberLock, [&] { return fiberTurn_; });
            }
            InputQueue::setThreadSource(source_.get());
            try {
                body_();
            } catch (...) {
                // A command that throws ends like a cancelled one; nothing leaves the fiber.
            }
            std::lock_guard<std::mutex> fiberLock(mutex_);
            state_ = State::Finished;
            fiberTurn_ = false;
            turn_.notify_all();
        });
        turn_.notify_all();
        turn_.wait(lock, [&] { return !fiberTurn_; });
    } else {
        handOver(lock);
    }
    if (refused_) return Outcome::Refused;
    if (state_ == State::Finished) return cancelled_ ? Outcome::Cancelled : Outcome::Finished;
    return Outcome::Waiting;
}

void CommandFiber::cancel() {
    std::unique_lock<std::mutex> lock(mutex_);
    cancelled_ = true;
    if (state_ == State::Waiting) handOver(lock);
}

}  // namespace korva::editor
