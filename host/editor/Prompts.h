// The prompts of the command line (kcedGetPoint, kcedGetDist, ...): each shows
// its prompt, reads one answer from the input queue, checks it against the
// restrictions and keywords of the last kcedInitGet, and asks again with the
// host's message when the answer does not fit. Points are in the current UCS.
#pragma once

#include <optional>
#include <string>

#include "editor/InputToken.h"
#include "editor/Keywords.h"
#include "kcadstd.h"
#include "kcge.h"

namespace korva::editor {

// kcedInitGet's restrictions and keywords; they apply to the next input call only.
struct InputRestrictions {
    int flags = 0;
    Keywords keywords;
};

class PromptState {
public:
    static PromptState& instance();
    void set(int flags, const wchar_t* keywords);
    // Takes the restrictions for one input call (they lapse).
    InputRestrictions take();
    // The keyword or arbitrary text of the last RTKWORD answer (kcedGetInput).
    std::wstring lastInput;

private:
    InputRestrictions pending_;
};

// Shows the prompt, reads one answer and echoes it on the command line. At the
// command prompt the end of input ends the session quietly; elsewhere it cancels.
InputToken readAnswer(const std::wstring& prompt, bool allowSpaces = false, bool commandPrompt = false);

// Parses a typed point: "x,y[,z]", "@dx,dy[,dz]" (from the last point),
// "dist<angle" and "@dist<angle" (angles in degrees), in the current UCS.
std::optional<KcGePoint3d> parsePoint(std::wstring_view text, const KcGePoint3d& lastPoint);
std::optional<double> parseNumber(std::wstring_view text);

int promptPoint(const kcad_point base, const wchar_t* prompt, kcad_point result);
int promptCorner(const kcad_point base, const wchar_t* prompt, kcad_point result);
int promptDistance(const kcad_point base, const wchar_t* prompt, double* result);
int promptAngle(const kcad_point base, const wchar_t* prompt, double* result, bool orientation);
int promptInteger(const wchar_t* prompt, int* result);
int promptReal(const wchar_t* prompt, double* result);
int promptString(bool allowSpaces, const wchar_t* prompt, wchar_t* result, size_t resultLength);
int promptKeyword(const wchar_t* prompt, wchar_t* result, size_t resultLength);

// What an answer means at a prompt that takes keywords: RTKWORD (the keyword or,
// with RSG_OTHER, the arbitrary text, kept for kcedGetInput) or nothing.
std::optional<int> keywordAnswer(const InputToken& answer, const InputRestrictions& restrictions);

}  // namespace korva::editor
