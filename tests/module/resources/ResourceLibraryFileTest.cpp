// The module's resource library as a file: the host's reader takes every line,
// every id the module asks for has a text, texts the documents quote are used
// word for word, and prompts open a new line.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "ExtendResourceTable.h"

namespace korva {
namespace {

using test::extendResources;
using test::extendText;

TEST(ExtendResources, HostReaderTakesEveryLine) {
    const auto& table = extendResources();
    ASSERT_TRUE(table.read) << "no resource library at " << table.path;
    for (const auto& problem : table.problems) ADD_FAILURE() << table.path << " line " << problem.line << ": " << problem.reason;
    EXPECT_GT(table.strings.size(), 0u);
}

// The ids the module loads, by command family (the local command names have their own test).
struct IdFamily {
    const char* family;
    std::vector<uint32_t> ids;
};

const IdFamily kFamilies[] = {
    {"LISP names and notice", {6120, 6121, 6275, 6650}},
    {"command not built yet", {9900}},
    {"TCASE", {2621, 2623, 2366}},
    {"TEXTMASK", {2570, 2571, 2572, 2573, 2574, 2575, 2576, 2343, 3508, 3509, 3510, 3564, 3565, 3566}},
    {"TXT2MTXT", {2337, 2626}},
    {"TCOUNT", {2647, 2648, 2358, 2359, 2360, 2361, 2362, 2364, 2365}},
    {"text placement", {2334, 2346, 2347, 2348, 2349, 2566, 2567, 2568, 2569, 2577, 2578, 2581, 2582, 2583, 2584,
                        2617, 2627, 2628, 3548}},
    {"TXTEXP", {3521, 3522, 3528}},
    {"layer state", {2194, 2209, 2244, 2245, 2246, 2247, 2248, 2249, 2250, 2251, 2252, 2254, 2255, 2256, 2257, 2258,
                     2259, 2260, 2261, 2262, 2263, 3563, 6197}},
    {"LAYISO", {2221, 2222, 2223, 2227, 2228, 2229, 2230, 2231, 2232, 2233, 2234, 2235, 2236, 2237, 2238, 2240, 2241,
                2242, 2243}},
    {"LAYDEL", {2195, 2196, 2197, 2198, 2199, 2200, 2202, 2203, 2204, 2205, 2206, 2207, 2208, 2209, 2210, 2211, 2212,
                2213, 2214, 2218}},
    {"object isolation", {3519, 3520}},
    {"BURST", {3239, 2452, 2453}},
    {"block property changers", {2531, 2532, 2533, 2534, 2535, 2536, 2537, 2538, 2539, 3003, 3004, 3005, 3006}},
    {"GATTE", {6123, 6124, 6126, 6127, 6128, 6129, 6132, 6135, 6136, 6137, 6138, 6139, 6140, 6141, 6142, 6143}},
    {"DELDUPL", {3544, 3545, 3546, 3547}},
    {"SYSVDLG", {2089, 2090, 2091, 2092}},
    {"DIMEX", {2012}},
    {"scale list", {6701, 6702, 6704, 6708, 6711, 6712, 6713, 6714, 6715, 6718}},
    {"drawing comparison", {3179, 3204, 3206, 3207, 3208, 3209, 3210, 3211, 3212, 3213, 3240, 3215, 3216, 3217, 3218,
                            3230, 3231, 3232, 3233, 3234, 3235, 3236, 3237, 3238}},
};

TEST(ExtendResources, EveryIdTheModuleLoadsHasAText) {
    for (const IdFamily& family : kFamilies) {
        for (uint32_t id : family.ids) {
            const auto text = extendResources().strings.find(id);
            EXPECT_TRUE(text && !text->empty()) << family.family << ": id " << id << " has no text";
        }
    }
}

// Texts the documents quote: the built-in English of the global attribute edit
// (the library replaces the built-in text, so it must say the same), the offset
// prompt's fallback, the notice for commands not built yet, the labels of the
// comparison filter list and the dialog titles.
TEST(ExtendResources, QuotedTextsAreUsedWordForWord) {
    const struct {
        uint32_t id;
        const wchar_t* text;
    } quoted[] = {
        {6123, L"\nThe block is nested and can't to change."},
        {6124, L"\nSelect block or attribute [Block name]: "},
        {6126, L"\nKnown tag names for block: "},
        {6127, L"\nSelect attribute or type attribute name: "},
        {6128, L"Number of inserts in drawing is "},
        {6129, L" Process all of them? [Yes/No] <Yes>: "},
        {6132, L"\nEnter new text: "},
        {6135, L"\nThe block selected has no attributes!"},
        {6136, L"\nEnter block name: "},
        {6137, L"\nInvalid block name."},
        {6138, L"Block _ Block"},
        {6139, L"Yes No _ Yes No"},
        {6140, L"\nSelected item not an INSERT."},
        {6141, L"\nBlock: %s   Attribute tag: %s"},
        {6142, L"\nPlease wait..."},
        {6143, L"\n%d attributes changed."},
        {2343, L"\nEnter offset factor relative to text height <%f>:"},
        {9900, L"\nThe command %s is not available yet."},
        {3206, L"Layer"},
        {3207, L"Linetype"},
        {3208, L"Linetype scale"},
        {3209, L"Thickness"},
        {3210, L"Color"},
        {3211, L"LineWeight"},
        {3212, L"Geometry Data"},
        {2366, L"TCASE-change text case"},
        {3179, L"File Compare"},
    };
    for (const auto& q : quoted) EXPECT_EQ(extendText(q.id), q.text) << "id " << q.id;
}

// A prompt (a text that ends by asking, ": ") starts on a line of its own; the
// one exception continues the line of 6128 and its number, as quoted.
TEST(ExtendResources, PromptsStartOnANewLine) {
    const std::vector<uint32_t> continuesALine = {6129};
    size_t prompts = 0;
    for (const IdFamily& family : kFamilies) {
        for (uint32_t id : family.ids) {
            const std::wstring text = extendText(id);
            if (!text.ends_with(L": ")) continue;
            ++prompts;
            const bool continues = std::find(continuesALine.begin(), continuesALine.end(), id) != continuesALine.end();
            EXPECT_EQ(text.starts_with(L"\n"), !continues) << family.family << ": id " << id;
        }
    }
    EXPECT_GT(prompts, 50u) << "the prompts were not recognised";
}

}  // namespace
}  // namespace korva
