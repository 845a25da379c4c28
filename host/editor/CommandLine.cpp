// Output of the command line, written as UTF-8.
#include "editor/CommandLine.h"

#include "db/Utf8.h"

namespace korva::editor {

CommandLine& CommandLine::instance() {
    static CommandLine line;
    return line;
}

void CommandLine::write(std::wstring_view text) {
    if (text.empty() || suppressed_ > 0) return;
    if (capture_) capture_->append(text);
    const std::string utf8 = db::wideToUtf8(text);
    if (!quiet_) {
        std::fwrite(utf8.data(), 1, utf8.size(), stdout);
        std::fflush(stdout);
    }
    if (transcript_) std::fwrite(utf8.data(), 1, utf8.size(), transcript_);
    atLineStart_ = text.back() == L'\n';
}

// Texts conventionally start with "\n" to begin a new line; at the start of a line
// that newline would only leave an empty one.
void CommandLine::print(std::wstring_view text) {
    if (atLineStart_ && !text.empty() && text.front() == L'\n') text.remove_prefix(1);
    write(text);
}

void CommandLine::prompt(std::wstring_view text) {
    if (!atLineStart_ && (text.empty() || text.front() != L'\n')) write(L"\n");
    print(text);
}

void CommandLine::echoInput(std::wstring_view input) {
    write(input);
    write(L"\n");
}

bool CommandLine::openTranscript(const std::string& path) {
    closeTranscript();
    transcript_ = std::fopen(path.c_str(), "w");
    return transcript_ != nullptr;
}

void CommandLine::closeTranscript() {
    if (transcript_) std::fclose(transcript_);
    transcript_ = nullptr;
}

}  // namespace korva::editor
