#include "editor/Keywords.h"

#include <cwctype>

namespace korva::editor {

namespace {

std::vector<std::wstring> words(std::wstring_view text) {
    std::vector<std::wstring> out;
    size_t i = 0;
    while (i < text.size()) {
        while (i < text.size() && text[i] == L' ') ++i;
        const size_t start = i;
        while (i < text.size() && text[i] != L' ') ++i;
        if (i > start) out.emplace_back(text.substr(start, i - start));
    }
    return out;
}

wchar_t upper(wchar_t c) { return static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))); }

}  // namespace

Keywords::Keywords(std::wstring_view list) {
    const std::vector<std::wstring> all = words(list);
    size_t separator = all.size();
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i] == L"_") {
            separator = i;
            break;
        }
    }
    local_.assign(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(separator));
    if (separator < all.size()) global_.assign(all.begin() + static_cast<std::ptrdiff_t>(separator) + 1, all.end());
    if (global_.size() != local_.size()) global_ = local_;  // a list without (matching) global forms
}

// The input matches when it is the keyword's capital letters (its abbreviation:
// "X" for "eXit"), or a prefix of the keyword that reaches its last capital ("ex",
// "exit"); a keyword without capitals must be typed whole. Case does not matter.
bool Keywords::matches(std::wstring_view keyword, std::wstring_view input) {
    if (input.empty() || input.size() > keyword.size()) return false;
    std::wstring capitals;
    size_t lastCapital = 0;
    for (size_t i = 0; i < keyword.size(); ++i) {
        if (std::iswupper(static_cast<wint_t>(keyword[i]))) {
            capitals.push_back(keyword[i]);
            lastCapital = i + 1;
        }
    }
    auto sameText = [](std::wstring_view a, std::wstring_view b) {
        if (a.size() != b.size()) return false;
        for (size_t i = 0; i < a.size(); ++i) {
            if (upper(a[i]) != upper(b[i])) return false;
        }
        return true;
    };
    if (!capitals.empty() && sameText(capitals, input)) return true;
    const size_t required = capitals.empty() ? keyword.size() : lastCapital;
    return input.size() >= required && sameText(keyword.substr(0, input.size()), input);
}

std::optional<std::wstring> Keywords::match(std::wstring_view input) const {
    if (!input.empty() && input.front() == L'_') {
        input.remove_prefix(1);
        for (const std::wstring& keyword : global_) {
            if (matches(keyword, input)) return keyword;
        }
        return std::nullopt;
    }
    for (size_t i = 0; i < local_.size(); ++i) {
        if (matches(local_[i], input)) return global_[i];
    }
    return std::nullopt;
}

}  // namespace korva::editor
