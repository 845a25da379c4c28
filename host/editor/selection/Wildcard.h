// Wild-card patterns as CAD hosts match names with them (wcmatch): "*" any run
// of characters, "?" any one character, "#" a digit, "@" a letter, "." a
// character that is neither, "[...]" one of a set (with ranges "a-z"), "[~...]"
// one character outside the set, "`" takes the next character literally, ","
// separates alternatives, and "~" at the start of an alternative negates it.
// Selection filters match without regard to case; the LISP function does not.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korva::editor {

class WildcardPattern {
public:
    WildcardPattern() = default;
    WildcardPattern(std::wstring_view pattern, bool ignoreCase);

    bool matches(std::wstring_view text) const;

private:
    struct Element {
        enum Kind { Char, AnyOne, AnyRun, Digit, Letter, NonAlphanumeric, Set } kind = Char;
        wchar_t c = 0;
        bool negated = false;                         // Set: "[~...]"
        std::vector<std::pair<wchar_t, wchar_t>> ranges;  // Set: inclusive ranges
    };
    struct Alternative {
        bool negated = false;
        std::vector<Element> elements;
    };

    static Alternative compile(std::wstring_view text, bool ignoreCase);
    bool matchesAlternative(const Alternative& alternative, std::wstring_view text) const;
    bool elementMatches(const Element& element, wchar_t c) const;
    wchar_t fold(wchar_t c) const;

    std::vector<Alternative> alternatives_;
    bool ignoreCase_ = true;
};

// Whether text matches the pattern (the public wcmatch rules).
bool wcmatch(std::wstring_view text, std::wstring_view pattern, bool ignoreCase);

}  // namespace korva::editor
