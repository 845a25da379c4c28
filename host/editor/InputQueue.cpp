#include "editor/InputQueue.h"

namespace korva::editor {

namespace {
thread_local InputSource* t_threadSource = nullptr;
}

InputQueue& InputQueue::instance() {
    static InputQueue queue;
    return queue;
}

void InputQueue::setThreadSource(InputSource* source) { t_threadSource = source; }
InputSource* InputQueue::threadSource() { return t_threadSource; }

void InputQueue::addSource(std::unique_ptr<InputSource> source) { sources_.push_back(std::move(source)); }
void InputQueue::clear() { sources_.clear(); }

InputSource* InputQueue::current() { return sources_.empty() ? nullptr : sources_.front().get(); }

InputToken InputQueue::next(const InputRequest& request) {
    if (t_threadSource) return t_threadSource->next(request);
    while (InputSource* source = current()) {
        InputToken token = source->next(request);
        if (token.kind != InputToken::Kind::EndOfInput) return token;
        sources_.pop_front();
    }
    return InputToken::end();
}

bool InputQueue::nextLine(std::wstring& line, const std::wstring& prompt) {
    if (t_threadSource) return t_threadSource->nextLine(line, prompt);
    while (InputSource* source = current()) {
        if (source->nextLine(line, prompt)) return true;
        sources_.pop_front();
    }
    return false;
}

bool InputQueue::peekLine(std::wstring& line, const std::wstring& prompt) {
    if (t_threadSource) return t_threadSource->peekLine(line, prompt);
    while (InputSource* source = current()) {
        if (source->peekLine(line, prompt)) return true;
        sources_.pop_front();
    }
    return false;
}

void InputQueue::rejected() {
    if (t_threadSource) t_threadSource->onRejected();
    else if (InputSource* source = current()) source->onRejected();
}

bool InputQueue::isInteractive() {
    if (t_threadSource) return t_threadSource->isInteractive();
    InputSource* source = current();
    return source && source->isInteractive();
}

}  // namespace korva::editor
