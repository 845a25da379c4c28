// Prompt helpers of the host commands, over the SDK's own input functions
// (kcedInitGet, kcedGetKword, kcedGetString, kcutPrintf): an answer as a wide
// string with its status, yes/no questions, and the host's messages.
#pragma once

#include <string>
#include <string_view>

#include "kcadstd.h"

namespace korva::editor {
class Document;
}

namespace korva::commands {

// One answer: RTNORM with its text, RTNONE for Enter, RTCAN when cancelled.
struct TextAnswer {
    int status = RTCAN;
    std::wstring text;
    bool given() const { return status == RTNORM && !text.empty(); }
    bool cancelled() const { return status != RTNORM && status != RTNONE; }
};

// A keyword from the list (its global form); with RSG_OTHER in flags other text too.
TextAnswer askKeyword(const std::wstring& prompt, const wchar_t* keywords, int flags = 0);
// A line of text; Enter gives RTNORM with an empty text, as kcedGetString does.
TextAnswer askString(const std::wstring& prompt, bool allowSpaces);
// A question answered "Y", "Yes" or "_Y" (any case); everything else, Enter included, is no.
// Cancel gives nothing.
bool askYes(const std::wstring& prompt, bool& cancelled);

// Prints a message on its own line (kcutPrintf).
void printMessage(std::wstring_view text);
// A refused answer: the message, and a scripted command gives up as prompts do.
void refuseAnswer(std::wstring_view text);

// The document the commands work on (null when none is open).
editor::Document* currentDocument();

std::wstring upperText(std::wstring_view text);
bool sameText(std::wstring_view a, std::wstring_view b);
// A real as the command line shows it: 4 decimals.
std::wstring formatReal(double value);

}  // namespace korva::commands
