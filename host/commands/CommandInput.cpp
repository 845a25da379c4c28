#include "commands/CommandInput.h"

#include <cwchar>
#include <cwctype>
#include <vector>

#include "editor/Document.h"
#include "editor/InputQueue.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

constexpr size_t kAnswerLength = 4096;

}  // namespace

TextAnswer askKeyword(const std::wstring& prompt, const wchar_t* keywords, int flags) {
    std::vector<wchar_t> buffer(kAnswerLength, L'\0');
    kcedInitGet(flags, keywords);
    TextAnswer answer;
    answer.status = kcedGetKword(prompt.c_str(), buffer.data(), buffer.size());
    if (answer.status == RTNORM) answer.text = buffer.data();
    return answer;
}

TextAnswer askString(const std::wstring& prompt, bool allowSpaces) {
    std::vector<wchar_t> buffer(kAnswerLength, L'\0');
    TextAnswer answer;
    answer.status = kcedGetString(allowSpaces ? 1 : 0, prompt.c_str(), buffer.data(), buffer.size());
    if (answer.status == RTNORM) answer.text = buffer.data();
    return answer;
}

bool askYes(const std::wstring& prompt, bool& cancelled) {
    const TextAnswer answer = askKeyword(prompt, L"Yes No _ Yes No", RSG_OTHER);
    cancelled = answer.cancelled();
    return answer.status == RTNORM && answer.text == L"Yes";
}

void printMessage(std::wstring_view text) {
    const std::wstring line(text);
    kcutPrintf(L"\n%s", line.c_str());
}

void refuseAnswer(std::wstring_view text) {
    printMessage(text);
    editor::InputQueue::instance().rejected();
}

editor::Document* currentDocument() { return editor::Session::instance().current(); }

std::wstring upperText(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return out;
}

bool sameText(std::wstring_view a, std::wstring_view b) { return upperText(a) == upperText(b); }

std::wstring formatReal(double value) {
    wchar_t buffer[64];
    std::swprintf(buffer, 64, L"%.4f", value);
    return buffer;
}

}  // namespace korva::commands
