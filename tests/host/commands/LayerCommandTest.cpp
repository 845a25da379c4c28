// -LAYER through scripts and kcedCommand on real drawings: the option
// sequences the extension module sends, wildcards and lists, the question
// about the current layer, and properties, checked on the layer records.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "TestFiles.h"
#include "db/ApiText.h"
#include "db/RecordFields.h"
#include "db/Utf8.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace korva {
namespace {

struct LayerState {
    bool off = false;
    bool frozen = false;
    bool locked = false;
    bool operator==(const LayerState&) const = default;
};

std::ostream& operator<<(std::ostream& out, const LayerState& s) {
    return out << (s.off ? "off " : "on ") << (s.frozen ? "frozen " : "thawed ") << (s.locked ? "locked" : "unlocked");
}

// A LAYER record of the DXF table: flags 70 (1 frozen, 4 locked), colour 62 (negative: off).
std::string layerRecord(const std::string& handle, const std::string& name, int flags = 0, int color = 7) {
    return "  0\nLAYER\n  5\n" + handle + "\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\n" +
           name + "\n 70\n" + std::to_string(flags) + "\n 62\n" + std::to_string(color) + "\n  6\nContinuous\n";
}

// WALLS, DOORS, WINDOWS and "Wall Detail" next to the current layer 0, all on, thawed and unlocked.
std::string layersDrawing(int flags = 0, int color = 7) {
    return test::drawingText("", layerRecord("A1", "WALLS", flags, color) + layerRecord("A2", "DOORS", flags, color) +
                                     layerRecord("A3", "WINDOWS", flags, color) +
                                     layerRecord("A4", "Wall Detail", flags, color));
}

// A linetype the Ltype option can give: DASHED in the LTYPE table.
std::string withDashedLinetype(std::string text) {
    const std::string record =
        "  0\nLTYPE\n  5\nB1\n330\n5\n100\nAcDbSymbolTableRecord\n100\nAcDbLinetypeTableRecord\n  2\nDASHED\n 70\n0\n"
        "  3\nDashed __ __\n 72\n65\n 73\n2\n 40\n0.75\n 49\n0.5\n 74\n0\n 49\n-0.25\n 74\n0\n";
    const size_t table = text.find("\n  2\nLTYPE\n");
    text.insert(text.find("  0\nENDTAB", table), record);
    return text;
}

const db::ObjectRecord& layer(test::ScriptRun& run, const std::string& name) {
    const db::ObjectRecord* record = run.drawing().tableRecord("LAYER", name);
    if (!record) throw std::runtime_error("no layer " + name);
    return *record;
}

LayerState stateOf(test::ScriptRun& run, const std::string& name) {
    const db::ObjectRecord& record = layer(run, name);
    const int64_t flags = db::fieldInteger(record, {}, 70, 0);
    return {db::fieldInteger(record, {}, 62, 7) < 0, (flags & 1) != 0, (flags & 4) != 0};
}

int colorOf(test::ScriptRun& run, const std::string& name) {
    return static_cast<int>(db::fieldInteger(layer(run, name), {}, 62, 7));
}

std::string clayer() { return db::wideToUtf8(editor::SystemVariables::instance().text(L"CLAYER")); }

struct StateCase {
    const char* intent;
    int initialFlags;
    int initialColor;
    const char* script;
    std::vector<std::pair<std::string, LayerState>> expected;
};

class LayerStateOptions : public testing::TestWithParam<StateCase> {};

// Each option changes exactly the layers its name list names, with abbreviations and "_" forms.
TEST_P(LayerStateOptions, ChangeTheNamedLayersOnly) {
    const StateCase& c = GetParam();
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing(c.initialFlags, c.initialColor));
    ASSERT_TRUE(run.run(c.script)) << run.outputUtf8();
    for (const auto& [name, state] : c.expected) EXPECT_EQ(stateOf(run, name), state) << c.intent << ": layer " << name;
}

const LayerState kOn{}, kOff{true, false, false}, kFrozen{false, true, false}, kLocked{false, false, true};
const LayerState kOffFrozenLocked{true, true, true};

INSTANTIATE_TEST_SUITE_P(
    ModuleSequences, LayerStateOptions,
    testing::Values(
        StateCase{"_OFF one name", 0, 7, "_.-LAYER\n_OFF\nWALLS\n\n", {{"WALLS", kOff}, {"DOORS", kOn}, {"0", kOn}}},
        StateCase{"_On every layer",
                  0,
                  -7,
                  "_.-LAYER\n_On\n*\n\n",
                  {{"WALLS", kOn}, {"DOORS", kOn}, {"WINDOWS", kOn}, {"Wall Detail", kOn}}},
        StateCase{"_LO a comma list with a wildcard, any case",
                  0,
                  7,
                  "_.-LAYER\n_LO\nwalls,DOOR*\n\n",
                  {{"WALLS", kLocked}, {"DOORS", kLocked}, {"WINDOWS", kOn}, {"Wall Detail", kOn}}},
        StateCase{"_U unlocks", 4, 7, "_.-Layer\n_U\nWALLS\n\n", {{"WALLS", kOn}, {"DOORS", kLocked}}},
        StateCase{"_T thaws every layer",
                  1,
                  7,
                  "_.-LAYER\n_T\n*\n\n",
                  {{"WALLS", kOn}, {"DOORS", kOn}, {"Wall Detail", kOn}}},
        StateCase{"F abbreviates Freeze; ? matches one character",
                  0,
                  7,
                  "-layer\nf\nD?ORS,WIN*\n\n",
                  {{"WALLS", kOn}, {"Wall Detail", kOn}, {"WINDOWS", kFrozen}, {"DOORS", kFrozen}}},
        StateCase{"a space ends a name in a script",
                  0,
                  7,
                  "-LAYER\nLO\nDOORS WALLS\n\n",
                  {{"WALLS", kOn}, {"DOORS", kLocked}}},
        StateCase{"several options in one run",
                  5,
                  -7,
                  "-LAYER\nON\nWALLS\nT\nW?LLS\nU\nDOORS\n\n",
                  {{"WALLS", kLocked}, {"DOORS", LayerState{true, true, false}}, {"WINDOWS", kOffFrozenLocked}}},
        StateCase{"~ names every layer but one",
                  0,
                  7,
                  "-LAYER\nLO\n~WALLS\n\n",
                  {{"WALLS", kOn}, {"DOORS", kLocked}, {"0", kLocked}}},
        StateCase{"a pattern that names nothing is reported and the command goes on",
                  0,
                  7,
                  "-LAYER\nOFF\nNOSUCH*\nLO\nWALLS\n\n",
                  {{"WALLS", kLocked}, {"DOORS", kOn}}}));

struct CurrentOffCase {
    const char* intent;
    const char* script;
    LayerState current;
    LayerState walls;
};

class LayerCurrentOff : public testing::TestWithParam<CurrentOffCase> {};

// The current layer goes off only when the one question after the name list is answered yes.
TEST_P(LayerCurrentOff, AsksOnceAndTakesTheNextAnswer) {
    const CurrentOffCase& c = GetParam();
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing());
    ASSERT_TRUE(run.run(c.script)) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"Really want layer 0 (the CURRENT layer) off? <N>")) << c.intent;
    EXPECT_EQ(stateOf(run, "0"), c.current) << c.intent;
    EXPECT_EQ(stateOf(run, "WALLS"), c.walls) << c.intent;
}

INSTANTIATE_TEST_SUITE_P(
    Answers, LayerCurrentOff,
    testing::Values(CurrentOffCase{"_Y confirms", "_.-LAYER\n_OFF\n0\n_Y\n\n", kOff, kOn},
                    CurrentOffCase{"Yes confirms", "-LAYER\nOFF\n0\nYes\n\n", kOff, kOn},
                    CurrentOffCase{"y confirms", "-LAYER\nOFF\n0\ny\n\n", kOff, kOn},
                    CurrentOffCase{"N keeps it on", "-LAYER\nOFF\n0\nN\n\n", kOn, kOn},
                    CurrentOffCase{"Enter keeps it on", "-LAYER\nOFF\n0\n\n\n", kOn, kOn},
                    CurrentOffCase{"other text keeps it on", "-LAYER\nOFF\n0\nmaybe\n\n", kOn, kOn},
                    CurrentOffCase{"* with _Y turns everything off", "_.-LAYER\n_OFF\n*\n_Y\n\n", kOff, kOff},
                    CurrentOffCase{"* with N turns the others off", "_.-LAYER\n_OFF\n*\nN\n\n", kOn, kOff}));

// The module's call for the current layer, through kcedCommand with its arguments.
TEST(LayerCommand, ScriptedCallTurnsTheCurrentLayerOff) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing());
    EXPECT_EQ(kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_OFF", RTSTR, L"WALLS", RTSTR, L"", RTNONE), RTNORM);
    EXPECT_EQ(kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_OFF", RTSTR, L"0", RTSTR, L"_Y", RTSTR, L"", RTNONE), RTNORM);
    EXPECT_EQ(stateOf(run, "WALLS"), kOff);
    EXPECT_EQ(stateOf(run, "0"), kOff);
    EXPECT_EQ(stateOf(run, "DOORS"), kOn);
}

// A name with a space comes whole as an argument of kcedCommand.
TEST(LayerCommand, ScriptedCallTakesNamesWithSpaces) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing());
    EXPECT_EQ(kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_LO", RTSTR, L"Wall Detail,DOORS", RTSTR, L"", RTNONE), RTNORM);
    EXPECT_EQ(stateOf(run, "Wall Detail"), kLocked);
    EXPECT_EQ(stateOf(run, "DOORS"), kLocked);
    EXPECT_EQ(stateOf(run, "WALLS"), kOn);
}

// The current layer is never frozen; the others of the list are.
TEST(LayerCommand, FreezeSkipsTheCurrentLayerWithAMessage) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing());
    ASSERT_TRUE(run.run("-LAYER\nF\n*\n\n"));
    EXPECT_TRUE(run.outputContains(L"Cannot freeze layer \"0\".  It is the CURRENT layer."));
    EXPECT_EQ(stateOf(run, "0"), kOn);
    EXPECT_EQ(stateOf(run, "WALLS"), kFrozen);
}

// 3.1's "_T name _M name _S name" sequence: thawed first, then made current.
TEST(LayerCommand, ThawMakeSetMakesAFrozenLayerCurrent) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing(1));
    ASSERT_TRUE(run.run("_.-LAYER\n_T\nDOORS\n_M\nDOORS\n_S\nDOORS\n\n"));
    EXPECT_EQ(stateOf(run, "DOORS"), kOn);
    EXPECT_EQ(clayer(), "DOORS");
    EXPECT_EQ(run.drawing().header.getString("$CLAYER").value_or(""), "DOORS");
}

// Make creates a missing layer with the table's defaults and makes it current.
TEST(LayerCommand, MakeCreatesAndSetsCurrent) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("-LAYER\nM\nNEW_LAYER\n\n"));
    const db::ObjectRecord& made = layer(run, "NEW_LAYER");
    EXPECT_EQ(db::fieldInteger(made, {}, 62, 0), 7);
    EXPECT_EQ(db::fieldText(made, {}, 6), "Continuous");
    EXPECT_EQ(clayer(), "NEW_LAYER");
}

struct RefusedCurrentCase {
    const char* intent;
    const char* script;
};

class LayerCurrentRefused : public testing::TestWithParam<RefusedCurrentCase> {};

// Make and Set leave CLAYER alone for frozen, missing and invalid layers.
TEST_P(LayerCurrentRefused, KeepsTheCurrentLayer) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing(1));
    run.run(GetParam().script);
    EXPECT_EQ(clayer(), "0") << GetParam().intent;
    EXPECT_FALSE(run.drawing().tableRecord("LAYER", "A*B")) << GetParam().intent;
}

INSTANTIATE_TEST_SUITE_P(Refusals, LayerCurrentRefused,
                         testing::Values(RefusedCurrentCase{"Set a frozen layer", "-LAYER\nS\nWALLS\n\n"},
                                         RefusedCurrentCase{"Make a frozen layer", "-LAYER\nM\nWALLS\n\n"},
                                         RefusedCurrentCase{"Set a missing layer", "-LAYER\nS\nNOSUCH\n\n"},
                                         RefusedCurrentCase{"Make an invalid name", "-LAYER\nM\nA*B\n\n"}));

// New makes every layer of a comma list and leaves existing ones as they are.
TEST(LayerCommand, NewCreatesEachNameOfTheList) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing(0, 3));
    ASSERT_TRUE(run.run("-LAYER\nN\nA1,B2,WALLS,C3\n\n"));
    for (const char* name : {"A1", "B2", "C3"}) EXPECT_EQ(colorOf(run, name), 7) << name;
    EXPECT_EQ(colorOf(run, "WALLS"), 3);
    EXPECT_EQ(clayer(), "0");
}

struct ColorCase {
    const char* intent;
    int initialColor;
    const char* script;
    int walls;
    int doors;
    int zero;
};

class LayerColor : public testing::TestWithParam<ColorCase> {};

// Colours by number or name reach the listed layers (Enter: the current one) and keep off layers off.
TEST_P(LayerColor, SetsTheIndexOfTheNamedLayers) {
    const ColorCase& c = GetParam();
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing(0, c.initialColor));
    ASSERT_TRUE(run.run(c.script)) << run.outputUtf8();
    EXPECT_EQ(colorOf(run, "WALLS"), c.walls) << c.intent;
    EXPECT_EQ(colorOf(run, "DOORS"), c.doors) << c.intent;
    EXPECT_EQ(colorOf(run, "0"), c.zero) << c.intent;
}

INSTANTIATE_TEST_SUITE_P(Colors, LayerColor,
                         testing::Values(ColorCase{"a name", 7, "-LAYER\nC\nred\nWALLS,DOORS\n\n", 1, 1, 7},
                                         ColorCase{"a number", 7, "-LAYER\nC\n140\nW*\n\n", 140, 7, 7},
                                         ColorCase{"Enter takes the current layer", 7, "-LAYER\nC\nBlue\n\n\n", 7, 7,
                                                   5},
                                         ColorCase{"off layers stay off", -7, "-LAYER\nC\n3\nWALLS\n\n", -3, -7, 7},
                                         ColorCase{"256 is refused", 7, "-LAYER\nC\n256\nWALLS\n\n", 7, 7, 7}));

// Truecolor stores the RGB value (420) next to the index.
TEST(LayerCommand, TruecolorStoresRgb) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing());
    ASSERT_TRUE(run.run("-LAYER\nC\nT\n255,128,0\nWALLS\n\n"));
    db::TagRef rgb;
    ASSERT_TRUE(db::findField(layer(run, "WALLS"), {}, 420, rgb));
    EXPECT_EQ(rgb.integer(), 0xFF8000);
    EXPECT_FALSE(db::hasField(layer(run, "DOORS"), {}, 420));
}

// Ltype takes loaded linetypes only.
TEST(LayerCommand, LinetypeMustBeLoaded) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(withDashedLinetype(layersDrawing()));
    ASSERT_TRUE(run.run("-LAYER\nL\ndashed\nWALLS\nL\nHIDDEN\n\n"));
    EXPECT_EQ(db::fieldText(layer(run, "WALLS"), {}, 6), "DASHED");
    EXPECT_EQ(db::fieldText(layer(run, "DOORS"), {}, 6), "Continuous");
    EXPECT_TRUE(run.outputContains(L"Linetype HIDDEN not found"));
}

struct WeightCase {
    const char* typed;
    int stored;
};

class LayerLineweight : public testing::TestWithParam<WeightCase> {};

// Lineweights in millimetres are stored in hundredths, rounded to a standard value.
TEST_P(LayerLineweight, StoresTheStandardWeight) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing());
    ASSERT_TRUE(run.run(std::string("-LAYER\nLW\n") + GetParam().typed + "\nWALLS\n\n"));
    EXPECT_EQ(db::fieldInteger(layer(run, "WALLS"), {}, 370, 0), GetParam().stored) << GetParam().typed;
    EXPECT_EQ(db::fieldInteger(layer(run, "DOORS"), {}, 370, -3), -3);
}

INSTANTIATE_TEST_SUITE_P(Weights, LayerLineweight,
                         testing::Values(WeightCase{"0.3", 30}, WeightCase{"0.32", 30}, WeightCase{"2.11", 211},
                                         WeightCase{"0", 0}, WeightCase{".05", 5}));

// ? lists the matching layers with their states.
TEST(LayerCommand, ListShowsNamesAndStates) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layersDrawing(5, -1));
    ASSERT_TRUE(run.run("-LAYER\n?\nW*\n\n"));
    EXPECT_TRUE(run.outputContains(L"WALLS"));
    EXPECT_TRUE(run.outputContains(L"Off Frozen Locked"));
    EXPECT_TRUE(run.outputContains(L"1 (red)"));
    EXPECT_FALSE(run.outputContains(L"DOORS"));
}

// On a real drawing: everything but the current layer frozen, saved, read back by both readers.
TEST(LayerCommand, CorpusDrawingSavesItsLayerStates) {
    const auto original = test::corpusFile("qcad__examples_flange.dxf");
    test::ScriptRun run = test::ScriptRun::fromFile(original.string());
    ASSERT_TRUE(run.run("-LAYER\nF\n*\nLO\n*\n\n"));
    test::TempDir dir;
    const auto saved = dir.file("flange.dxf");
    ASSERT_EQ(dxf::saveDxfFile(run.drawing(), saved.string()), "");
    auto reread = dxf::readDxfFile(saved.string());
    ASSERT_TRUE(reread.ok()) << reread.error;
    const std::string current(db::toStoredText(editor::SystemVariables::instance().text(L"CLAYER")));
    size_t layers = 0;
    for (const db::ObjectRecord* record : reread.drawing->table("LAYER")->records) {
        const int64_t flags = db::fieldInteger(*record, {}, 70, 0);
        const bool isCurrent = db::recordName(*record) == current;
        EXPECT_EQ((flags & 1) != 0, !isCurrent) << db::recordName(*record);
        EXPECT_NE(flags & 4, 0) << db::recordName(*record);
        ++layers;
    }
    EXPECT_GT(layers, 5u);
    EXPECT_TRUE(test::openWithIndependentReader({{saved, original}}).empty());
}

}  // namespace
}  // namespace korva
