// Selection filters through kcedSSGet("X") on the scene drawing: types, layer
// patterns, colours, nested logic, relational operators on numbers, angles and
// points, block names, the reactor test and extended-data applications; and
// filters that are not valid lists.
#include <gtest/gtest.h>

#include <functional>

#include "SelectionScene.h"

namespace korva {
namespace {

using test::Filter;

struct FilterCase {
    const char* intent;
    std::function<void(Filter&)> build;
    std::vector<std::string> expected;  // handles, in creation order
};

std::vector<std::string> selectX(const resbuf* filter, int& status) {
    kcad_name set = {0, 0};
    status = kcedSSGet(L"X", nullptr, nullptr, filter, set);
    std::vector<std::string> handles = test::memberHandles(set);
    if (status == RTNORM) kcedSSFree(set);
    return handles;
}

TEST(FilterList, EachCaseSelectsExactlyTheEntitiesItDescribes) {
    test::ScriptRun run = test::sceneRun();
    const FilterCase cases[] = {
        {"a type", [](Filter& f) { f.text(0, L"LINE"); }, {"A1", "A6", "A7", "AB"}},
        {"a type in lower case", [](Filter& f) { f.text(0, L"line"); }, {"A1", "A6", "A7", "AB"}},
        {"alternative types", [](Filter& f) { f.text(0, L"LINE,ARC"); }, {"A1", "A3", "A6", "A7", "AB"}},
        {"a layer pattern", [](Filter& f) { f.text(8, L"w*"); }, {"A1", "A2", "A8", "A9", "AA", "AB", "AC"}},
        {"a negated layer pattern", [](Filter& f) { f.text(8, L"~WALLS"); }, {"A3", "A4", "A5", "A6", "A7"}},
        {"a digit in a layer name", [](Filter& f) { f.text(8, L"DOORS-#"); }, {"A3", "A4"}},
        {"a colour", [](Filter& f) { f.integer(62, 1); }, {"A1"}},
        {"an absent colour is BYLAYER", [](Filter& f) { f.text(0, L"CIRCLE").integer(62, 256); }, {"A2", "A9"}},
        {"colours below BYLAYER", [](Filter& f) { f.op(L"<").integer(62, 256); }, {"A1", "A3"}},
        {"colours other than BYLAYER", [](Filter& f) { f.op(L"!=").integer(62, 256); }, {"A1", "A3"}},
        {"implicit AND of type, layer pattern and colour",
         [](Filter& f) { f.text(0, L"LINE").text(8, L"W*").integer(62, 1); }, {"A1"}},
        {"OR around an AND",
         [](Filter& f) {
             f.op(L"<or").text(0, L"CIRCLE").op(L"<AND").text(0, L"ARC").text(8, L"DOORS*").op(L"and>").op(L"OR>");
         },
         {"A2", "A3", "A9"}},
        {"NOT",
         [](Filter& f) { f.text(8, L"WALLS").op(L"<NOT").text(0, L"LINE").op(L"NOT>"); }, {"A2", "A8", "A9", "AA", "AC"}},
        {"XOR of two items",
         [](Filter& f) { f.op(L"<XOR").text(0, L"CIRCLE").text(8, L"DOORS*").op(L"XOR>"); }, {"A2", "A3", "A4", "A9"}},
        {"NOT inside OR inside AND",
         [](Filter& f) {
             f.op(L"<AND").op(L"<OR").text(0, L"LINE").text(0, L"POINT").op(L"OR>").op(L"<NOT").text(8, L"*LAYER,FROZEN")
                 .op(L"NOT>").op(L"AND>");
         },
         {"A1", "AA", "AB"}},
        {"the reactor group", [](Filter& f) { f.text(102, L"{ACAD_REACTORS"); }, {"A9"}},
        {"not in a reactor group",
         [](Filter& f) { f.text(0, L"CIRCLE").op(L"<NOT").text(102, L"{ACAD_REACTORS").op(L"NOT>"); }, {"A2"}},
        {"data of one application", [](Filter& f) { f.marker(-3).text(1001, L"KVTEST"); }, {"A3", "A9"}},
        {"data of two applications", [](Filter& f) { f.marker(-3).text(1001, L"KVTEST").text(1001, L"KVOTHER"); }, {"A9"}},
        {"an application pattern", [](Filter& f) { f.marker(-3).text(1001, L"kv*"); }, {"A3", "A9"}},
        {"a block name", [](Filter& f) { f.text(0, L"INSERT").text(2, L"BOX"); }, {"A8"}},
        {"a block name pattern", [](Filter& f) { f.text(2, L"N??T"); }, {"AC"}},
        {"a radius above 1.5", [](Filter& f) { f.op(L">").real(40, 1.5); }, {"A3"}},
        {"radii of at least 1", [](Filter& f) { f.text(0, L"CIRCLE,ARC").op(L">=").real(40, 1.0); }, {"A2", "A3", "A9"}},
        {"an end angle in radians", [](Filter& f) { f.op(L"=").real(51, 1.5707963267948966); }, {"A3"}},
        {"points with x above 45", [](Filter& f) { f.op(L">,*,*").point(10, {45, 0, 0}); }, {"A9", "AA", "AB"}},
        {"points with x below 5 and y at least 10",
         [](Filter& f) { f.op(L"<,>=,*").point(10, {5, 10, 0}); }, {"A4", "A6", "AC"}},
        {"an exact point", [](Filter& f) { f.point(10, {10, 0, 0}); }, {"A2"}},
        {"any value of a group", [](Filter& f) { f.text(0, L"CIRCLE").op(L"*").integer(62, 99); }, {"A2", "A9"}},
        {"bits of a flag", [](Filter& f) { f.op(L"&").integer(60, 1); }, {"AB"}},
    };
    for (const FilterCase& c : cases) {
        Filter filter;
        c.build(filter);
        int status = 0;
        const auto handles = selectX(filter.list(), status);
        EXPECT_EQ(status, RTNORM) << c.intent;
        EXPECT_EQ(handles, c.expected) << c.intent;
    }
}

TEST(FilterList, AFilterNothingPassesGivesAnErrorAndNoSet) {
    test::ScriptRun run = test::sceneRun();
    Filter filter;
    filter.text(0, L"SPLINE");
    kcad_name set = {11, 22};
    EXPECT_EQ(kcedSSGet(L"X", nullptr, nullptr, filter.list(), set), RTERROR);
    EXPECT_EQ(set[0], 11) << "the name is left alone";
}

TEST(FilterList, MalformedListsAreRefused) {
    test::ScriptRun run = test::sceneRun();
    const struct {
        const char* intent;
        std::function<void(Filter&)> build;
    } cases[] = {
        {"an unclosed group", [](Filter& f) { f.op(L"<OR").text(0, L"LINE"); }},
        {"a closing operator without its group", [](Filter& f) { f.text(0, L"LINE").op(L"AND>"); }},
        {"a group closed by another", [](Filter& f) { f.op(L"<OR").text(0, L"LINE").op(L"AND>"); }},
        {"NOT with two items", [](Filter& f) { f.op(L"<NOT").text(0, L"LINE").text(8, L"0").op(L"NOT>"); }},
        {"XOR with one item", [](Filter& f) { f.op(L"<XOR").text(0, L"LINE").op(L"XOR>"); }},
        {"an unknown operator", [](Filter& f) { f.op(L"=>").integer(62, 1); }},
        {"an operator at the end", [](Filter& f) { f.text(0, L"LINE").op(L">"); }},
        {"per-coordinate operators on a number", [](Filter& f) { f.op(L">,>,>").integer(62, 1); }},
        {"-3 without applications", [](Filter& f) { f.marker(-3); }},
    };
    for (const auto& c : cases) {
        Filter filter;
        c.build(filter);
        kcad_name set = {0, 0};
        EXPECT_EQ(kcedSSGet(L"X", nullptr, nullptr, filter.list(), set), RTERROR) << c.intent;
    }
}

TEST(FilterList, XTakesEntitiesOfEveryLayoutButNothingInsideBlocks) {
    test::ScriptRun run = test::sceneRun();
    int status = 0;
    const auto handles = selectX(nullptr, status);
    EXPECT_EQ(handles, (std::vector<std::string>{"A1", "A2", "A3", "A4", "A5", "A6", "A7", "A8", "A9", "AA", "AB", "AC"}))
        << "no attribute, no block entity; off, frozen and invisible entities included";
}

}  // namespace
}  // namespace korva
