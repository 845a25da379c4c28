// TextInput: script text (a file, an --eval text, or lines typed at a terminal)
// split into answers the way CAD scripts are read:
//  - a space or a line end acts as Enter and ends the answer, except at a prompt
//    that takes spaces, where only the line end does;
//  - an empty line, or a second space, is a bare Enter;
//  - a line whose first character is ";" is a comment;
//  - "(" starts a LISP expression, read to its matching ")" and evaluated.
#pragma once

#include <functional>
#include <string>

#include "editor/InputSource.h"
#include "editor/LispValue.h"

namespace korva::editor {

// Evaluates a LISP expression; false with the reason when it fails.
using LispEvaluator = std::function<bool(std::wstring_view source, LispValue& value, std::wstring& error)>;
void setLispEvaluator(LispEvaluator evaluator);
const LispEvaluator& lispEvaluator();

class TextInput : public InputSource {
public:
    // refill appends more text (a terminal line) and returns false when there is none.
    using Refill = std::function<bool(std::wstring& text, const std::wstring& prompt)>;

    explicit TextInput(std::wstring text, Refill refill = {}, bool interactive = false)
        : buffer_(std::move(text)), refill_(std::move(refill)), interactive_(interactive) {}

    InputToken next(const InputRequest& request) override;
    bool nextLine(std::wstring& line, const std::wstring& prompt) override;
    bool peekLine(std::wstring& line, const std::wstring& prompt) override;
    bool isInteractive() const override { return interactive_; }

private:
    bool ensure(const std::wstring& prompt);
    void skipCommentLines(const std::wstring& prompt);
    InputToken readExpression(const std::wstring& prompt);
    bool findLine(std::wstring& line, size_t& nextLineAt, const std::wstring& prompt);

    std::wstring buffer_;
    size_t pos_ = 0;
    bool lineStart_ = true;
    Refill refill_;
    bool interactive_;
};

}  // namespace korva::editor
