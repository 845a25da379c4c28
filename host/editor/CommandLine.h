// CommandLine: the output side of the command line. Prompts, the input that
// answered them and everything commands print go to standard output (unless
// quiet) and to the transcript file; tests capture the same text.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace korva::editor {

class CommandLine {
public:
    static CommandLine& instance();

    // What commands print (kcutPrintf, messages). "\n" starts a new line.
    void print(std::wstring_view text);
    // A prompt, started on a fresh line when the previous output left one open.
    void prompt(std::wstring_view text);
    // The input that answered a prompt, as the command line shows it.
    void echoInput(std::wstring_view input);

    void setQuiet(bool quiet) { quiet_ = quiet; }
    bool openTranscript(const std::string& path);
    void closeTranscript();
    // Tests read what the command line showed.
    void setCapture(std::wstring* capture) { capture_ = capture; }
    std::wstring* capture() const { return capture_; }

    // Scripted host commands run silently while CMDECHO is 0: a depth counter,
    // because such commands nest.
    void suppress() { ++suppressed_; }
    void unsuppress() {
        if (suppressed_ > 0) --suppressed_;
    }
    bool isSuppressed() const { return suppressed_ > 0; }
    bool atLineStart() const { return atLineStart_; }

private:
    void write(std::wstring_view text);

    bool quiet_ = false;
    bool atLineStart_ = true;
    int suppressed_ = 0;
    std::FILE* transcript_ = nullptr;
    std::wstring* capture_ = nullptr;
};

}  // namespace korva::editor
