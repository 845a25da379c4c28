// Dialogs driven by scripts through the real engine: a test command opens the
// sample form and the script's dialog actions answer it (see DialogTestSupport.h).
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "DialogTestSupport.h"
#include "ScriptRun.h"
#include "TestFiles.h"

namespace korva::test {
namespace {

class DialogScript : public ::testing::Test {
protected:
    void SetUp() override {
        registerDialogTestCommands();
        resetDialogTestRecords();
    }
    // Runs the sample form with the action lines in a new run; false when the script was stopped.
    bool runForm(const std::string& actions) {
        run_.reset();  // one run at a time: a new one closes the drawing of the old
        run_.emplace();
        return run_->run("SAMPLEFORM\n" + actions);
    }
    bool outputHas(const std::wstring& text) const { return run_->outputContains(text); }
    std::string output() const { return run_->outputUtf8(); }

    std::optional<ScriptRun> run_;
};

TEST_F(DialogScript, EveryActionKindReachesTheFormAndItsHandlers) {
    ASSERT_TRUE(runForm("@check Bold\n@check Center\n@set Name = North wall\n@set Units = inches\n@set Count = 7\n"
                        "@pick Layers = Walls;Doors\n@set Width = 2.5\n@press OK\n"));
    const SampleRecord& record = sampleRecord();
    EXPECT_EQ(record.result, IDOK);
    EXPECT_EQ(record.values.bold, 1);
    EXPECT_EQ(record.values.alignment, 1);
    EXPECT_EQ(record.alignmentLetter, L'C');
    EXPECT_EQ(record.radioClicks, 1);
    EXPECT_EQ(record.values.name, CString(L"North wall"));
    EXPECT_EQ(record.nameEdits, 1);
    EXPECT_EQ(record.nameFinished, 1);
    EXPECT_EQ(record.values.unit, 1);
    EXPECT_EQ(record.unitActivations, 1);
    EXPECT_EQ(record.values.count, 7);
    EXPECT_EQ(record.pickedLayers, (std::vector<std::wstring>{L"Walls", L"Doors"}));  // "0" was deselected
    EXPECT_GE(record.selectionChanges, 1);
    EXPECT_DOUBLE_EQ(record.values.width, 2.5);
    EXPECT_EQ(record.cancels, 0);
}

TEST_F(DialogScript, EachActionIsEchoedAfterTheDialogsTitle) {
    ASSERT_TRUE(runForm("@check Bold\n@press OK\n"));
    EXPECT_TRUE(outputHas(L"Sample Form: @check Bold\n"));
    EXPECT_TRUE(outputHas(L"Sample Form: @press OK\n"));
}

TEST_F(DialogScript, LabelsMatchObjectNamesVisibleTextsAndBuddyLabels) {
    struct Case {
        const char* action;
        std::function<bool(const SampleRecord&)> reached;
    };
    const auto bold = [](const SampleRecord& r) { return r.values.bold == 1; };
    const auto named = [](const SampleRecord& r) { return r.values.name == CString(L"X1"); };
    const auto feet = [](const SampleRecord& r) { return r.values.unit == 2; };
    const Case cases[] = {
        {"@check boldCheck", bold},          {"@check BOLDCHECK", bold},       {"@check Bold", bold},
        {"@check &Bold", bold},              {"@check bOLD", bold},            {"@set nameEdit = X1", named},
        {"@set Name = X1", named},           {"@set Name: = X1", named},       {"@set &name = X1", named},
        {"@set units = Feet", feet},         {"@set unitCombo = feet", feet},  {"  @set Units=Feet  ", feet},
    };
    for (const Case& c : cases) {
        resetDialogTestRecords();
        EXPECT_TRUE(runForm(std::string(c.action) + "\n@press OK\n")) << c.action;
        EXPECT_EQ(sampleRecord().result, IDOK) << c.action;
        EXPECT_TRUE(c.reached(sampleRecord())) << c.action;
    }
}

TEST_F(DialogScript, AnUnknownLabelStopsTheScriptAndListsTheLabels) {
    EXPECT_FALSE(runForm("@check Bolder\n@press OK\nSAMPLEFORM\n@press OK\n"));
    EXPECT_TRUE(outputHas(L"There is no control \"Bolder\" of the dialog \"Sample Form\""));
    EXPECT_TRUE(outputHas(L"boldCheck (\"Bold\")"));
    EXPECT_TRUE(outputHas(L"nameEdit (\"Name:\")"));
    EXPECT_TRUE(outputHas(L"okButton (\"OK\")"));
    EXPECT_FALSE(outputHas(L"secretButton"));  // hidden
    EXPECT_FALSE(outputHas(L"applyButton"));   // disabled
    EXPECT_EQ(sampleRecord().result, IDCANCEL);
    EXPECT_EQ(sampleRecord().cancels, 1);
    EXPECT_EQ(sampleRecord().runs, 1);  // nothing after the error ran
}

TEST_F(DialogScript, ALabelOfSeveralControlsIsAmbiguous) {
    EXPECT_FALSE(runForm("@press Browse\n"));
    EXPECT_TRUE(outputHas(L"The label \"Browse\" is ambiguous"));
    EXPECT_TRUE(outputHas(L"browseOldButton"));
    EXPECT_TRUE(outputHas(L"browseNewButton"));
    EXPECT_EQ(sampleRecord().result, IDCANCEL);
}

TEST_F(DialogScript, MalformedActionsStopTheScript) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"@set Name", L"has no \"=\""},
        {"@pick Layers", L"has no \"=\""},
        {"@frob Bold", L"Unknown dialog action \"@frob\""},
        {"@check", L"names no control"},
        {"@set = 5", L"names no control"},
    };
    for (const auto& [action, message] : cases) {
        resetDialogTestRecords();
        EXPECT_FALSE(runForm(std::string(action) + "\n@press OK\n")) << action;
        EXPECT_TRUE(outputHas(message)) << action << "\n" << output();
        EXPECT_EQ(sampleRecord().result, IDCANCEL) << action;
        EXPECT_EQ(sampleRecord().cancels, 1) << action;
    }
}

TEST_F(DialogScript, ActionsThatDoNotFitTheirControlStopTheScript) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"@uncheck Center", L"a radio button is unchecked by checking another one"},
        {"@press Apply", L"is disabled"},
        {"@press Secret", L"There is no control \"Secret\""},
        {"@set Count = 11", L"11 lies outside 1 to 10"},
        {"@set Count = many", L"is not a whole number"},
        {"@pick Layers = Walls;Roof", L"has no item \"Roof\""},
        {"@set Units = Yards", L"has no item \"Yards\"; its items are \"Millimeters\", \"Inches\", \"Feet\""},
        {"@press Bold", L"use @check or @uncheck"},
        {"@check OK", L"it works on check boxes and radio buttons"},
        {"@set OK = 1", L"it works on line edits, combo boxes and spin boxes"},
        {"@pick Name = A", L"it works on lists"},
    };
    for (const auto& [action, message] : cases) {
        resetDialogTestRecords();
        EXPECT_FALSE(runForm(std::string(action) + "\n@press OK\n")) << action;
        EXPECT_TRUE(outputHas(message)) << action << "\n" << output();
        EXPECT_EQ(sampleRecord().result, IDCANCEL) << action;
    }
}

TEST_F(DialogScript, ALineThatIsNoActionCancelsAndIsLeftForTheCommandPrompt) {
    ASSERT_TRUE(runForm("@check Bold\nSAMPLEFORM\n@press OK\n"));
    EXPECT_EQ(sampleRecord().runs, 2);
    EXPECT_EQ(sampleRecord().cancels, 1);     // the first form
    EXPECT_EQ(sampleRecord().result, IDOK);   // the second form
    EXPECT_EQ(sampleRecord().values.bold, 0); // the second form started afresh
}

TEST_F(DialogScript, ARelativePointIsNoAction) {
    // Left for the command prompt, where it is no command.
    EXPECT_FALSE(runForm("@10,0\n"));
    EXPECT_EQ(sampleRecord().result, IDCANCEL);
    EXPECT_FALSE(outputHas(L"Unknown dialog action"));
    EXPECT_TRUE(outputHas(L"Unknown command \"@10,0\""));
}

TEST_F(DialogScript, TheEndOfTheInputCancelsWithoutStoppingTheScript) {
    EXPECT_TRUE(runForm("@check Bold\n"));
    EXPECT_EQ(sampleRecord().result, IDCANCEL);
    EXPECT_EQ(sampleRecord().cancels, 1);
    EXPECT_EQ(sampleRecord().values.bold, 0);  // OnOK never read the controls
}

TEST_F(DialogScript, CheckAndUncheckSetTheStateWhateverItWas) {
    const struct {
        int preset;
        const char* action;
        int expected;
    } cases[] = {
        {1, "@uncheck Bold", 0}, {0, "@uncheck Bold", 0}, {1, "@check Bold", 1}, {0, "@check Bold", 1},
    };
    for (const auto& c : cases) {
        resetDialogTestRecords();
        samplePreset().bold = c.preset;
        EXPECT_TRUE(runForm(std::string(c.action) + "\n@press OK\n")) << c.action;
        EXPECT_EQ(sampleRecord().values.bold, c.expected) << c.action << " from " << c.preset;
    }
}

TEST_F(DialogScript, DataExchangeShowsTheMembersAndReadsThemBack) {
    SampleValues& preset = samplePreset();
    preset.bold = 1;
    preset.alignment = 2;
    preset.name = L"Door";
    preset.unit = 2;
    preset.count = 3;
    preset.width = 1.25;
    ASSERT_TRUE(runForm("@press OK\n"));
    const SampleRecord& record = sampleRecord();
    EXPECT_TRUE(record.shownBold);
    EXPECT_TRUE(record.shownRight);
    EXPECT_EQ(record.shownName, L"Door");
    EXPECT_EQ(record.shownUnit, 2);
    EXPECT_EQ(record.shownCount, 3);
    EXPECT_TRUE(record.values == preset);
}

TEST_F(DialogScript, ABadNumberKeepsTheDialogOpenWithAMessage) {
    ASSERT_TRUE(runForm("@set Width = abc\n@press OK\n@set Width = 2.5\n@press OK\n"));
    EXPECT_TRUE(outputHas(L"** Please enter a number."));
    EXPECT_EQ(sampleRecord().result, IDOK);
    EXPECT_DOUBLE_EQ(sampleRecord().values.width, 2.5);
}

TEST_F(DialogScript, CancelLeavesTheMembersAsLoaded) {
    samplePreset().name = L"Kept";
    ASSERT_TRUE(runForm("@set Name = Changed\n@press Cancel\n"));
    EXPECT_EQ(sampleRecord().result, IDCANCEL);
    EXPECT_EQ(sampleRecord().values.name, CString(L"Kept"));
    EXPECT_EQ(sampleRecord().cancels, 1);
}

TEST_F(DialogScript, AButtonThatOpensTheFileDialogReadsThePathFromTheNextLine) {
    TempDir folder;
    const auto file = folder.file("plan.dxf");
    writeFileBytes(file, "0\nEOF\n");
    std::string typed = file.string();
    for (char& c : typed) {
        if (c == '/') c = '\\';
    }
    ASSERT_TRUE(runForm("@press browseOldButton\n" + typed + "\n@press OK\n"));
    EXPECT_EQ(sampleRecord().oldPath, file.wstring());
    EXPECT_EQ(sampleRecord().result, IDOK);
    EXPECT_TRUE(outputHas(L"Old drawing: "));
}

TEST_F(DialogScript, AButtonThatOpensTheColorDialogReadsTheColorFromTheNextLine) {
    ASSERT_TRUE(runForm("@press Color...\n5\n@press OK\n"));
    EXPECT_EQ(sampleRecord().chosenColor, L"5");
    EXPECT_EQ(sampleRecord().result, IDOK);
}

}  // namespace
}  // namespace korva::test
