// The TCASE case routines. Each scans its text left to right and builds the
// result in a new string; single characters are converted through the
// KvErrorEat wrappers, so a conversion that fails leaves that character as it
// was. A code pair (a backslash and the character after it) is copied as it
// stands; only those two characters are protected, deliberately.
#include "text/TextCase.h"

#include <string>
#include <string_view>

#include "framework/MessageUtils.h"

namespace {

constexpr wchar_t kBackslash = L'\\';

wchar_t upperOf(wchar_t c) {
    std::wstring one(1, c);
    KvErrorEat::strMakeUpper(one);
    return one.empty() ? c : one[0];
}

wchar_t lowerOf(wchar_t c) {
    std::wstring one(1, c);
    KvErrorEat::strMakeLower(one);
    return one.empty() ? c : one[0];
}

// Appends the code pair that starts at i (a lone backslash at the end stays alone)
// and returns the position after it.
size_t appendCodePair(std::wstring_view text, size_t i, std::wstring& result) {
    result += text[i];
    if (i + 1 < text.size()) result += text[i + 1];
    return i + 2;
}

// "." ends a sentence unless another "." follows; the flag is used up by the
// next ordinary character, even a space.
std::wstring sentenceCase(std::wstring_view text) {
    std::wstring result;
    bool capitalizeNext = true;
    for (size_t i = 0; i < text.size();) {
        const wchar_t c = text[i];
        const wchar_t next = i + 1 < text.size() ? text[i + 1] : L'\0';
        if (c == L'{' || c == L'}') {
            result += c;
            ++i;
        } else if (c == L'.' && next != L'.') {
            result += c;
            capitalizeNext = true;
            ++i;
        } else if (c == kBackslash) {
            i = appendCodePair(text, i, result);
        } else {
            result += capitalizeNext ? upperOf(c) : lowerOf(c);
            capitalizeNext = false;
            ++i;
        }
    }
    return result;
}

// A TEXT string is converted whole, backslashes and all; multiline contents
// keep their code pairs.
std::wstring wholeCase(std::wstring_view text, bool isMText, bool upper) {
    if (!isMText) {
        std::wstring result(text);
        if (upper) KvErrorEat::strMakeUpper(result);
        else KvErrorEat::strMakeLower(result);
        return result;
    }
    std::wstring result;
    for (size_t i = 0; i < text.size();) {
        if (text[i] == kBackslash) {
            // A pair of two backslashes would be converted too, which changes nothing.
            i = appendCodePair(text, i, result);
        } else {
            result += upper ? upperOf(text[i]) : lowerOf(text[i]);
            ++i;
        }
    }
    return result;
}

// Words start after a space and after the paragraph code "\P" (upper case only).
std::wstring titleCase(std::wstring_view text) {
    std::wstring result;
    bool capitalizeNext = true;
    for (size_t i = 0; i < text.size();) {
        const wchar_t c = text[i];
        if (c == L' ') {
            result += c;
            capitalizeNext = true;
            ++i;
        } else if (c == L'{' || c == L'}') {
            result += c;
            ++i;
        } else if (c == kBackslash) {
            if (i + 1 < text.size() && text[i + 1] == L'P') capitalizeNext = true;
            i = appendCodePair(text, i, result);
        } else {
            result += capitalizeNext ? upperOf(c) : lowerOf(c);
            capitalizeNext = false;
            ++i;
        }
    }
    return result;
}

// Letters swap case: a character that upper-casing leaves alone is lower-cased.
std::wstring toggleCase(std::wstring_view text) {
    std::wstring result;
    for (size_t i = 0; i < text.size();) {
        if (text[i] == kBackslash) {
            i = appendCodePair(text, i, result);
            continue;
        }
        const wchar_t upper = upperOf(text[i]);
        result += upper == text[i] ? lowerOf(text[i]) : upper;
        ++i;
    }
    return result;
}

std::wstring_view viewOf(const wchar_t* text) { return text ? std::wstring_view(text) : std::wstring_view(); }

// Swaps the host string for a fresh copy of the result; the old one stays when
// the copy cannot be made.
Kcad::ErrorStatus replaceText(wchar_t*& text, const std::wstring& result) {
    wchar_t* copy = nullptr;
    const Kcad::ErrorStatus status = kcutNewString(result.c_str(), copy);
    if (status != Kcad::eOk || !copy) return status != Kcad::eOk ? status : Kcad::eOutOfMemory;
    if (text) kcutDelString(text);
    text = copy;
    return Kcad::eOk;
}

}  // namespace

Kcad::ErrorStatus tcase_sentence(wchar_t*& text, bool /*isMText*/) {
    return replaceText(text, sentenceCase(viewOf(text)));
}

Kcad::ErrorStatus tcase_lower(wchar_t*& text, bool isMText) {
    return replaceText(text, wholeCase(viewOf(text), isMText, false));
}

Kcad::ErrorStatus tcase_upper(wchar_t*& text, bool isMText) {
    return replaceText(text, wholeCase(viewOf(text), isMText, true));
}

Kcad::ErrorStatus tcase_title(wchar_t*& text, bool /*isMText*/) { return replaceText(text, titleCase(viewOf(text))); }

Kcad::ErrorStatus tcase_change(wchar_t*& text, bool /*isMText*/) { return replaceText(text, toggleCase(viewOf(text))); }

Kcad::ErrorStatus tcase_convert(int mode, wchar_t*& text, bool isMText) {
    switch (mode) {
        case kTcaseSentence: return tcase_sentence(text, false);
        case kTcaseLower: return tcase_lower(text, isMText);
        case kTcaseUpper: return tcase_upper(text, isMText);
        case kTcaseTitle: return tcase_title(text, false);
        case kTcaseToggle: return tcase_change(text, false);
        default: return Kcad::eOk;  // a stored value that is no mode: the text stays as it is
    }
}
