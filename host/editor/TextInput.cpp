#include "editor/TextInput.h"

#include "editor/CommandLine.h"

namespace korva::editor {

namespace {
LispEvaluator& evaluatorSlot() {
    static LispEvaluator evaluator;
    return evaluator;
}
}  // namespace

void setLispEvaluator(LispEvaluator evaluator) { evaluatorSlot() = std::move(evaluator); }
const LispEvaluator& lispEvaluator() { return evaluatorSlot(); }

// Makes sure there is text at pos_, asking the refill (a terminal) for more.
bool TextInput::ensure(const std::wstring& prompt) {
    while (pos_ >= buffer_.size()) {
        if (!refill_) return false;
        buffer_.erase(0, pos_);
        pos_ = 0;
        if (!refill_(buffer_, prompt)) return false;
    }
    return true;
}

void TextInput::skipCommentLines(const std::wstring& prompt) {
    while (lineStart_ && ensure(prompt) && buffer_[pos_] == L';') {
        const size_t end = buffer_.find(L'\n', pos_);
        pos_ = end == std::wstring::npos ? buffer_.size() : end + 1;
    }
}

InputToken TextInput::next(const InputRequest& request) {
    skipCommentLines(request.prompt);
    if (!ensure(request.prompt)) return InputToken::end();
    if (buffer_[pos_] == L'(') return readExpression(request.prompt);
    std::wstring token;
    while (true) {
        if (!ensure(request.prompt)) break;  // the text ends: what was read is the answer
        const wchar_t c = buffer_[pos_++];
        if (c == L'\r') continue;
        if (c == L'\n') {
            lineStart_ = true;
            break;
        }
        if (c == L' ' && !request.allowSpaces) {
            lineStart_ = false;
            break;
        }
        token.push_back(c);
        lineStart_ = false;
    }
    InputToken result = token.empty() ? InputToken::enter() : InputToken::ofText(std::move(token));
    result.fromTerminal = interactive_;
    return result;
}

InputToken TextInput::readExpression(const std::wstring& prompt) {
    std::wstring expression;
    int depth = 0;
    bool inString = false;
    while (ensure(prompt)) {
        const wchar_t c = buffer_[pos_++];
        if (c == L'\r') continue;
        expression.push_back(c);
        if (inString) {
            if (c == L'\\' && pos_ < buffer_.size()) expression.push_back(buffer_[pos_++]);
            else if (c == L'"') inString = false;
            continue;
        }
        if (c == L'"') inString = true;
        else if (c == L'(') ++depth;
        else if (c == L')' && --depth == 0) break;
    }
    // The separator after the expression ends the answer like after any other.
    if (pos_ < buffer_.size() && (buffer_[pos_] == L' ' || buffer_[pos_] == L'\n')) {
        lineStart_ = buffer_[pos_] == L'\n';
        ++pos_;
    } else if (pos_ < buffer_.size() && buffer_[pos_] == L'\r') {
        pos_ += (pos_ + 1 < buffer_.size() && buffer_[pos_ + 1] == L'\n') ? 2 : 1;
        lineStart_ = true;
    }
    if (depth != 0) {
        CommandLine::instance().print(L"\n; error: the expression has no closing parenthesis\n");
        return InputToken::cancel();
    }
    LispValue value;
    std::wstring error;
    if (!lispEvaluator()) {
        CommandLine::instance().print(L"\n; error: LISP expressions cannot be evaluated here\n");
        return InputToken::cancel();
    }
    if (!lispEvaluator()(expression, value, error)) {
        CommandLine::instance().print(L"\n; error: " + error + L"\n");
        return InputToken::cancel();
    }
    InputToken result = InputToken::ofValue(std::move(value));
    result.text = expression;
    result.fromTerminal = interactive_;
    return result;
}

// The line at the read position (without its end) and where the one after it starts.
bool TextInput::findLine(std::wstring& line, size_t& nextLineAt, const std::wstring& prompt) {
    skipCommentLines(prompt);
    if (!ensure(prompt)) return false;
    const size_t end = buffer_.find(L'\n', pos_);
    line = buffer_.substr(pos_, end == std::wstring::npos ? std::wstring::npos : end - pos_);
    if (!line.empty() && line.back() == L'\r') line.pop_back();
    nextLineAt = end == std::wstring::npos ? buffer_.size() : end + 1;
    return true;
}

bool TextInput::nextLine(std::wstring& line, const std::wstring& prompt) {
    size_t nextLineAt = 0;
    if (!findLine(line, nextLineAt, prompt)) return false;
    pos_ = nextLineAt;
    lineStart_ = true;
    return true;
}

bool TextInput::peekLine(std::wstring& line, const std::wstring& prompt) {
    size_t nextLineAt = 0;
    return findLine(line, nextLineAt, prompt);
}

}  // namespace korva::editor
