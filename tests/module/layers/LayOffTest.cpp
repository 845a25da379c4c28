// LAYOFF through scripts on the plan drawing: the layer each nesting mode
// turns off for picks inside blocks and an external reference, the question
// before the current layer goes off, keywords, misses and the options prompt.
// The nesting mode lasts for the process, so every script sets it first.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "LayerTestSupport.h"
#include "ModuleSession.h"
#include "db/Utf8.h"

namespace korva::test::layers {
namespace {

constexpr const char* kWorkCurrent = "(setvar \"CLAYER\" \"WORK\")\n";

ScriptRun planRun() { return withExtendModule(ScriptRun::fromDxfText(planDrawing())); }

struct NestingCase {
    const char* intent;
    const char* mode;  // the answer at the options prompt
    const char* pick;
    const char* turnedOff;
    std::vector<const char*> stayOn;
};

void PrintTo(const NestingCase& c, std::ostream* out) { *out << c.intent; }

class LayOffNesting : public testing::TestWithParam<NestingCase> {};

// Each pick turns off exactly the layer its nesting mode names, and says so.
TEST_P(LayOffNesting, TurnsOffTheLayerTheModeNames) {
    const NestingCase& c = GetParam();
    ScriptRun run = planRun();
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYOFF\nO\n" + c.mode + "\n" + c.pick + "\n\n"))
        << run.outputUtf8();
    EXPECT_EQ(stateOf(run, c.turnedOff), kOff) << c.intent;
    for (const char* layer : c.stayOn) EXPECT_EQ(stateOf(run, layer), kOn) << c.intent << ": " << layer;
    EXPECT_TRUE(run.outputContains(message(2261, {db::utf8ToWide(c.turnedOff)}))) << c.intent;
}

INSTANTIATE_TEST_SUITE_P(
    PicksInBlocksAndXrefs, LayOffNesting,
    testing::Values(
        NestingCase{"a top-level object: its own layer", "B", "5,0", "WALLS", {"REFS_OUT", "DOORS"}},
        NestingCase{"Block, two levels deep: the innermost reference's layer",
                    "B", "105,0", "REFS_IN", {"FURN", "REFS_OUT"}},
        NestingCase{"Entity, two levels deep: the object's own layer", "E", "105,0", "FURN", {"REFS_IN", "REFS_OUT"}},
        NestingCase{"None, two levels deep: the top-level reference's layer",
                    "N", "105,0", "REFS_OUT", {"FURN", "REFS_IN"}},
        NestingCase{"Block, one level deep: the reference holding it", "B", "105,10", "REFS_OUT", {"WALLS"}},
        NestingCase{"Entity, one level deep: the object's layer", "e", "105,10", "WALLS", {"REFS_OUT"}},
        NestingCase{"Block, layer 0 inside a block: the reference's layer", "B", "105,5", "REFS_IN", {"0", "FURN"}},
        NestingCase{"Entity, layer 0 inside a block: layer 0", "E", "105,5", "0", {"REFS_IN", "REFS_OUT"}},
        NestingCase{"Block, in an xref without a pipe: xref name and pipe",
                    "B", "205,0", "XR|PIPES", {"PIPES", "XREFS"}},
        NestingCase{"Entity, in an xref without a pipe: xref name and pipe", "E", "205,0", "XR|PIPES", {"PIPES"}},
        NestingCase{"None, in an xref: the xref reference's layer", "n", "205,0", "XREFS", {"PIPES", "XR|PIPES"}},
        NestingCase{"Block, a layer name starting with the digit zero is not prefixed",
                    "B", "205,10", "05DETAIL", {"XR|05DETAIL"}},
        NestingCase{"Entity, layer 0 inside an xref stays 0", "E", "205,5", "0", {"XREFS"}},
        NestingCase{"Block, a name that has a pipe already stays as it is", "B", "205,15", "XR|WIRES", {"XREFS"}},
        NestingCase{"a name with wildcard characters names only its own layer", "B", "5,40", "A.1", {"A-1"}}));

// Enter at the question turns the current layer off; "N" keeps it on and the picks go on.
TEST(LayOff, TheCurrentLayerGoesOffOnlyAfterYes) {
    struct Case {
        const char* answer;
        LayerState work;
    };
    for (const Case& c : {Case{"", kOff}, Case{"Y", kOff}, Case{"yes", kOff}, Case{"N", kOn}}) {
        ScriptRun run = planRun();
        ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYOFF\n5,140\n" + c.answer + "\n5,0\n\n")) << c.answer;
        EXPECT_TRUE(run.outputContains(message(2260, {L"WORK"}))) << c.answer;
        EXPECT_EQ(stateOf(run, "WORK"), c.work) << "answer \"" << c.answer << "\"";
        EXPECT_EQ(stateOf(run, "WALLS"), kOff) << "the pick after answer \"" << c.answer << "\"";
        EXPECT_EQ(variable(L"CLAYER"), "WORK");
        EXPECT_EQ(occurrences(run.output(), message(2261, {L"WORK"})), c.work.off ? 1u : 0u) << c.answer;
    }
}

// Cancel at the question ends the whole command with nothing turned off.
TEST(LayOff, CancelAtTheQuestionEndsTheCommand) {
    ScriptRun run = planRun();
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYOFF\n5,140\n"));
    EXPECT_TRUE(run.outputContains(message(2260, {L"WORK"})));
    EXPECT_EQ(stateOf(run, "WORK"), kOn);
    ASSERT_TRUE(run.run("LAYON\n"));  // the next command runs: LAYOFF was not left waiting
    EXPECT_TRUE(run.outputContains(message(6197)));
}

// A miss asks again without a message; other typed text asks again; "eXit" and Enter end it.
TEST(LayOff, MissesAndTypedTextAskAgainUntilExit) {
    struct Case {
        const char* intent;
        const char* answers;
        size_t prompts;
        LayerState walls;
    };
    for (const Case& c : {Case{"a miss, then a pick, then Enter", "50,50\n5,0\n\n", 3, kOff},
                          Case{"other text, then a pick, then exit", "hello\n5,0\nexit\n", 3, kOff},
                          Case{"X abbreviates eXit", "X\n", 1, kOn},
                          Case{"Enter ends at once", "\n", 1, kOn}}) {
        ScriptRun run = planRun();
        ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYOFF\nO\nB\n" + c.answers)) << c.intent;
        // The prompt is shown once before the options and then once per pick prompt.
        EXPECT_EQ(occurrences(run.output(), message(2256)), c.prompts + 1) << c.intent;
        EXPECT_EQ(stateOf(run, "WALLS"), c.walls) << c.intent;
        EXPECT_FALSE(run.outputContains(message(2249))) << c.intent;
    }
}

// The options prompt names the current mode, Enter keeps it, and other answers ask again.
TEST(LayOff, OptionsPromptShowsAndKeepsTheMode) {
    ScriptRun run = planRun();
    ASSERT_TRUE(run.run(std::string(kWorkCurrent) + "LAYOFF\nO\nB\n\n"));  // a known mode to start from
    const size_t before = run.output().size();
    ASSERT_TRUE(run.run("LAYOFF\nO\nE\nO\n\n105,0\nO\nwhat\nNone\n105,10\n\n")) << run.outputUtf8();
    const std::wstring shown = run.output().substr(before);
    EXPECT_EQ(occurrences(shown, message(2258)), 1u);  // asked while the mode was Block
    EXPECT_EQ(occurrences(shown, message(2259)), 3u);  // Entity: Enter, then "what" and the question again
    EXPECT_EQ(stateOf(run, "FURN"), kOff);             // Enter kept Entity
    EXPECT_EQ(stateOf(run, "REFS_OUT"), kOff);         // None: the top-level reference
    EXPECT_EQ(stateOf(run, "WALLS"), kOn);
    EXPECT_EQ(stateOf(run, "REFS_IN"), kOn);
}

}  // namespace
}  // namespace korva::test::layers
