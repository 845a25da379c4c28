// Keyword-list resources under the host's own keyword rules (editor::Keywords,
// what kcedInitGet installs): each list yields the keywords the module compares
// its answers with, each abbreviation picks its own keyword, and each prompt
// offers exactly the keywords of the list it is asked with.
#include <gtest/gtest.h>

#include <cstdint>
#include <cwctype>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "ExtendResourceTable.h"
#include "editor/Keywords.h"

namespace korva {
namespace {

using editor::Keywords;
using test::extendText;

// How the module compares the keyword it gets with the one it wants.
enum class Compare { Exact, IgnoringCase, FirstLetter };

bool sameIgnoringCase(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (std::towupper(static_cast<wint_t>(a[i])) != std::towupper(static_cast<wint_t>(b[i]))) return false;
    }
    return true;
}

// `wanted` may hold alternatives separated by "|" ("Start|S").
bool satisfies(std::wstring_view result, std::wstring_view wanted, Compare how) {
    while (true) {
        const size_t bar = wanted.find(L'|');
        const std::wstring_view one = wanted.substr(0, bar);
        switch (how) {
            case Compare::Exact:
                if (result == one) return true;
                break;
            case Compare::IgnoringCase:
                if (sameIgnoringCase(result, one)) return true;
                break;
            case Compare::FirstLetter:
                if (!result.empty() && sameIgnoringCase(result.substr(0, 1), one)) return true;
                break;
        }
        if (bar == std::wstring_view::npos) return false;
        wanted.remove_prefix(bar + 1);
    }
}

// What the list gives for each of its local keywords typed in full.
std::vector<std::wstring> yields(const Keywords& keywords) {
    std::vector<std::wstring> out;
    for (const std::wstring& local : keywords.local()) {
        const auto global = keywords.match(local);
        EXPECT_TRUE(global.has_value()) << "the keyword " << testing::PrintToString(local) << " does not match itself";
        if (global) out.push_back(*global);
    }
    return out;
}

struct KeywordList {
    uint32_t id;
    Compare compare;
    std::vector<const wchar_t*> mustYield;
    bool nothingElse;  // the module accepts no other keyword
};

const KeywordList kKeywordLists[] = {
    {2573, Compare::IgnoringCase, {L"Masktype", L"Offset"}, false},
    {3510, Compare::Exact, {L"Wipeout", L"3dface", L"Solid"}, true},
    {2358, Compare::FirstLetter, {L"X", L"Y", L"S"}, false},
    {2365, Compare::FirstLetter, {L"O", L"P", L"S", L"F"}, false},
    {2346,
     Compare::IgnoringCase,
     {L"Start|S", L"Center|C", L"Middle|M", L"Right|R", L"TL", L"TC", L"TR", L"ML", L"MC", L"MR", L"BL", L"BC", L"BR"},
     false},
    {2583, Compare::Exact, {L"Left", L"Middle", L"Right"}, true},
    {2209, Compare::IgnoringCase, {L"YES", L"NO"}, false},
    {2254, Compare::IgnoringCase, {L"Options", L"eXit"}, false},
    {2255, Compare::FirstLetter, {L"E", L"B", L"N"}, false},
    {2236, Compare::IgnoringCase, {L"Setting"}, false},
    {2237, Compare::IgnoringCase, {L"Off", L"Lock"}, false},
    {2238, Compare::IgnoringCase, {L"Vpfreeze", L"Off"}, false},
    {2198, Compare::IgnoringCase, {L"Type", L"Undo"}, false},
    {3006, Compare::Exact, {L"S"}, false},
    {6138, Compare::IgnoringCase, {L"Block"}, false},
    {6139, Compare::Exact, {L"Yes", L"No"}, false},
    {6702, Compare::IgnoringCase, {L"?", L"Add", L"Delete", L"Reset", L"Exit"}, false},
    {6711, Compare::IgnoringCase, {L"Yes", L"No"}, false},
};

TEST(ExtendKeywordLists, EachListYieldsTheKeywordsTheModuleWants) {
    for (const KeywordList& list : kKeywordLists) {
        const Keywords keywords(extendText(list.id));
        ASSERT_FALSE(keywords.empty()) << "id " << list.id;
        const std::vector<std::wstring> results = yields(keywords);
        for (const wchar_t* wanted : list.mustYield) {
            bool found = false;
            for (const std::wstring& result : results) found = found || satisfies(result, wanted, list.compare);
            EXPECT_TRUE(found) << "id " << list.id << " yields no " << testing::PrintToString(std::wstring(wanted));
        }
        if (!list.nothingElse) continue;
        for (const std::wstring& result : results) {
            bool wanted = false;
            for (const wchar_t* one : list.mustYield) wanted = wanted || satisfies(result, one, list.compare);
            EXPECT_TRUE(wanted) << "id " << list.id << " also yields " << testing::PrintToString(result);
        }
    }
}

// Typing a keyword's capital letters (its shortest form) picks that keyword and
// no other, and no two keywords of a list give the same answer.
TEST(ExtendKeywordLists, EachAbbreviationPicksItsOwnKeyword) {
    for (const KeywordList& list : kKeywordLists) {
        const Keywords keywords(extendText(list.id));
        std::set<std::wstring> answers;
        for (const std::wstring& local : keywords.local()) {
            const auto full = keywords.match(local);
            ASSERT_TRUE(full.has_value()) << "id " << list.id;
            EXPECT_TRUE(answers.insert(*full).second) << "id " << list.id << ": two keywords give " << testing::PrintToString(*full);
            std::wstring capitals;
            for (wchar_t c : local) {
                if (std::iswupper(static_cast<wint_t>(c))) capitals.push_back(c);
            }
            if (capitals.empty()) continue;
            EXPECT_EQ(keywords.match(capitals), full) << "id " << list.id << ": " << testing::PrintToString(capitals);
        }
    }
}

// The options between "[" and "]" of a prompt, split at "/".
std::vector<std::wstring> offeredOptions(const std::wstring& prompt) {
    std::vector<std::wstring> options;
    const size_t open = prompt.find(L'[');
    const size_t close = prompt.find(L']', open);
    if (open == std::wstring::npos || close == std::wstring::npos) return options;
    std::wstring_view inside = std::wstring_view(prompt).substr(open + 1, close - open - 1);
    while (true) {
        const size_t slash = inside.find(L'/');
        options.emplace_back(inside.substr(0, slash));
        if (slash == std::wstring_view::npos) return options;
        inside.remove_prefix(slash + 1);
    }
}

// The default between "<" and ">" after the options, if any.
std::optional<std::wstring> shownDefault(const std::wstring& prompt) {
    const size_t open = prompt.find(L'<', prompt.find(L']'));
    const size_t close = prompt.find(L'>', open);
    if (open == std::wstring::npos || close == std::wstring::npos) return std::nullopt;
    return prompt.substr(open + 1, close - open - 1);
}

std::wstring firstWord(const std::wstring& option) { return option.substr(0, option.find(L' ')); }

struct PromptWithKeywords {
    uint32_t prompt;
    uint32_t keywords;
    const wchar_t* enterMeans;  // what Enter stands for, which the shown default must name; null: no fixed default
    Compare compare;
};

const PromptWithKeywords kPrompts[] = {
    {2572, 2573, nullptr, Compare::Exact},
    {3509, 3510, L"Wipeout", Compare::Exact},
    {2359, 2358, L"S", Compare::FirstLetter},
    {2362, 2365, L"P", Compare::FirstLetter},
    {2347, 2346, L"Start|S", Compare::IgnoringCase},
    {2582, 2583, L"Left", Compare::Exact},
    {2256, 2254, nullptr, Compare::Exact},
    {2257, 2255, L"N", Compare::FirstLetter},
    {2258, 2255, L"B", Compare::FirstLetter},
    {2259, 2255, L"E", Compare::FirstLetter},
    {2260, 2209, L"Y", Compare::FirstLetter},
    {2210, 2209, L"NO", Compare::IgnoringCase},
    {2223, 2236, nullptr, Compare::Exact},
    {2227, 2237, nullptr, Compare::Exact},
    {2228, 2238, nullptr, Compare::Exact},
    {2195, 2198, nullptr, Compare::Exact},
    {2196, 2198, nullptr, Compare::Exact},
    {3004, 3006, nullptr, Compare::Exact},
    {6124, 6138, nullptr, Compare::Exact},
    {6129, 6139, L"Yes", Compare::Exact},
    {6701, 6702, L"Exit", Compare::IgnoringCase},
    {6708, 6711, L"No", Compare::IgnoringCase},
};

TEST(ExtendKeywordLists, PromptsOfferTheKeywordsOfTheirList) {
    for (const PromptWithKeywords& pair : kPrompts) {
        const std::wstring prompt = extendText(pair.prompt);
        const Keywords keywords(extendText(pair.keywords));
        const std::vector<std::wstring> options = offeredOptions(prompt);
        ASSERT_FALSE(options.empty()) << "prompt " << pair.prompt << " offers no [options]";
        std::set<std::wstring> offered;
        for (const std::wstring& option : options) {
            offered.insert(firstWord(option));
            EXPECT_TRUE(keywords.match(firstWord(option)).has_value())
                << "prompt " << pair.prompt << " offers " << testing::PrintToString(option) << ", which list "
                << pair.keywords << " refuses";
        }
        for (const std::wstring& local : keywords.local()) {
            EXPECT_TRUE(offered.count(local)) << "prompt " << pair.prompt << " does not offer " << testing::PrintToString(local);
        }
        if (!pair.enterMeans) continue;
        const auto shown = shownDefault(prompt);
        ASSERT_TRUE(shown.has_value()) << "prompt " << pair.prompt << " shows no <default>";
        const auto answer = keywords.match(*shown);
        EXPECT_TRUE(answer && satisfies(*answer, pair.enterMeans, pair.compare))
            << "prompt " << pair.prompt << " shows <" << testing::PrintToString(*shown) << "> but Enter means "
            << testing::PrintToString(std::wstring(pair.enterMeans));
    }
}

// Display names of choices are shown as the default of their question; typed
// back, each must pick the choice it names.
TEST(ExtendKeywordLists, DisplayNamesOfChoicesPickThoseChoices) {
    const struct {
        uint32_t name;
        uint32_t keywords;
        const wchar_t* choice;
    } choices[] = {
        {2232, 2237, L"Off"},      {2233, 2237, L"Lock"},   {2234, 2238, L"Vpfreeze"}, {2235, 2238, L"Off"},
        {3564, 3510, L"Wipeout"},  {3565, 3510, L"3dface"}, {3566, 3510, L"Solid"},
    };
    for (const auto& c : choices) {
        const Keywords keywords(extendText(c.keywords));
        EXPECT_EQ(keywords.match(extendText(c.name)), std::optional<std::wstring>(c.choice)) << "id " << c.name;
    }
}

}  // namespace
}  // namespace korva
