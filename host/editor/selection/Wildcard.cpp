// Compiles a pattern into alternatives of single-character elements and runs
// the classic star-backtracking match: every element but "*" takes exactly one
// character, so remembering the last star is enough.
#include "editor/selection/Wildcard.h"

#include <cwctype>

namespace korva::editor {

namespace {

// Splits at commas that are neither escaped nor inside brackets.
std::vector<std::wstring_view> splitAlternatives(std::wstring_view pattern) {
    std::vector<std::wstring_view> parts;
    size_t start = 0;
    bool inSet = false;
    for (size_t i = 0; i < pattern.size(); ++i) {
        const wchar_t c = pattern[i];
        if (c == L'`') {
            ++i;
        } else if (inSet) {
            if (c == L']') inSet = false;
        } else if (c == L'[') {
            inSet = true;
            // A "]" right after "[" or "[~" is a member, not the end.
            if (i + 1 < pattern.size() && pattern[i + 1] == L'~') ++i;
            if (i + 1 < pattern.size() && pattern[i + 1] == L']') ++i;
        } else if (c == L',') {
            parts.push_back(pattern.substr(start, i - start));
            start = i + 1;
        }
    }
    parts.push_back(pattern.substr(start));
    return parts;
}

}  // namespace

WildcardPattern::WildcardPattern(std::wstring_view pattern, bool ignoreCase) : ignoreCase_(ignoreCase) {
    for (std::wstring_view part : splitAlternatives(pattern)) alternatives_.push_back(compile(part, ignoreCase));
}

wchar_t WildcardPattern::fold(wchar_t c) const {
    return ignoreCase_ ? static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))) : c;
}

WildcardPattern::Alternative WildcardPattern::compile(std::wstring_view text, bool ignoreCase) {
    auto folded = [ignoreCase](wchar_t c) {
        return ignoreCase ? static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))) : c;
    };
    Alternative out;
    size_t i = 0;
    if (!text.empty() && text.front() == L'~') {
        out.negated = true;
        i = 1;
    }
    for (; i < text.size(); ++i) {
        Element e;
        const wchar_t c = text[i];
        switch (c) {
            case L'*': e.kind = Element::AnyRun; break;
            case L'?': e.kind = Element::AnyOne; break;
            case L'#': e.kind = Element::Digit; break;
            case L'@': e.kind = Element::Letter; break;
            case L'.': e.kind = Element::NonAlphanumeric; break;
            case L'`':
                // A trailing backquote stands for itself.
                e.c = folded(i + 1 < text.size() ? text[++i] : c);
                break;
            case L'[': {
                size_t j = i + 1;
                e.kind = Element::Set;
                if (j < text.size() && text[j] == L'~') {
                    e.negated = true;
                    ++j;
                }
                bool first = true;
                bool closed = false;
                while (j < text.size()) {
                    wchar_t member = text[j];
                    if (member == L']' && !first) {
                        closed = true;
                        break;
                    }
                    first = false;
                    if (member == L'`' && j + 1 < text.size()) member = text[++j];
                    wchar_t last = member;
                    if (j + 2 < text.size() && text[j + 1] == L'-' && text[j + 2] != L']') {
                        last = text[j + 2];
                        if (last == L'`' && j + 3 < text.size()) {
                            last = text[j + 3];
                            ++j;
                        }
                        j += 2;
                    }
                    const wchar_t low = folded(member), high = folded(last);
                    e.ranges.emplace_back(std::min(low, high), std::max(low, high));
                    ++j;
                }
                if (!closed) {
                    // An unclosed "[" is an ordinary character.
                    e = Element{};
                    e.c = L'[';
                    break;
                }
                i = j;
                break;
            }
            default: e.c = folded(c); break;
        }
        out.elements.push_back(std::move(e));
    }
    return out;
}

bool WildcardPattern::elementMatches(const Element& element, wchar_t c) const {
    const auto wc = static_cast<wint_t>(c);
    switch (element.kind) {
        case Element::Char: return fold(c) == element.c;
        case Element::AnyOne: return true;
        case Element::AnyRun: return true;
        case Element::Digit: return std::iswdigit(wc) != 0;
        case Element::Letter: return std::iswalpha(wc) != 0;
        case Element::NonAlphanumeric: return std::iswalnum(wc) == 0;
        case Element::Set: {
            const wchar_t f = fold(c);
            bool inside = false;
            for (const auto& [low, high] : element.ranges) {
                if (f >= low && f <= high) {
                    inside = true;
                    break;
                }
            }
            return inside != element.negated;
        }
    }
    return false;
}

bool WildcardPattern::matchesAlternative(const Alternative& alternative, std::wstring_view text) const {
    const auto& elements = alternative.elements;
    size_t e = 0, t = 0;
    size_t starElement = std::wstring_view::npos, starText = 0;
    while (t < text.size()) {
        if (e < elements.size() && elements[e].kind == Element::AnyRun) {
            starElement = e++;
            starText = t;
        } else if (e < elements.size() && elementMatches(elements[e], text[t])) {
            ++e;
            ++t;
        } else if (starElement != std::wstring_view::npos) {
            e = starElement + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (e < elements.size() && elements[e].kind == Element::AnyRun) ++e;
    return e == elements.size();
}

bool WildcardPattern::matches(std::wstring_view text) const {
    for (const Alternative& alternative : alternatives_) {
        if (matchesAlternative(alternative, text) != alternative.negated) return true;
    }
    return false;
}

bool wcmatch(std::wstring_view text, std::wstring_view pattern, bool ignoreCase) {
    return WildcardPattern(pattern, ignoreCase).matches(text);
}

}  // namespace korva::editor
