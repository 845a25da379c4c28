// The colour dialog answered by scripts, its layout, and the index palette of
// kcedGetRGB against the standard colours.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include <QAbstractButton>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

#include "DialogTestSupport.h"
#include "ScriptRun.h"
#include "db/IndexColors.h"
#include "kced.h"
#include "runtime/dialogs/IndexColorDialog.h"

namespace korva::test {
namespace {

class ColorDialog : public ::testing::Test {
protected:
    void SetUp() override {
        registerDialogTestCommands();
        resetDialogTestRecords();
    }
};

TEST_F(ColorDialog, ScriptAnswersChooseOrCancel) {
    const struct {
        bool allowed;
        const char* answer;
        bool chosen;
        int index;              // the index afterwards (the start, 7, when cancelled)
        const wchar_t* message; // printed, or null
    } cases[] = {
        {false, "5", true, 5, nullptr},
        {false, "255", true, 255, nullptr},
        {false, "green", true, 3, nullptr},
        {true, "bylayer", true, 256, nullptr},
        {true, "ByBlock", true, 0, nullptr},
        {true, "256", true, 256, nullptr},
        {true, "0", true, 0, nullptr},
        {false, "BYLAYER", false, 7, L"BYLAYER is not allowed here"},
        {false, "0", false, 7, L"BYBLOCK is not allowed here"},
        {false, "300", false, 7, L"There is no color 300"},
        {true, "-1", false, 7, L"There is no color -1"},
        {false, "teal", false, 7, L"\"teal\" is not a color"},
        {false, "", false, 7, nullptr},
    };
    for (const auto& c : cases) {
        resetDialogTestRecords();
        HostDialogCall& call = hostDialogCall();
        call.colorStart = 7;
        call.colorAllowed = c.allowed;
        ScriptRun run;
        EXPECT_TRUE(run.run(std::string("COLORPICK\n") + c.answer + "\n")) << c.answer;
        EXPECT_EQ(call.colorChosen, c.chosen) << c.answer;
        EXPECT_EQ(call.colorIndex, c.index) << c.answer;
        if (c.message) {
            EXPECT_TRUE(run.outputContains(c.message)) << c.answer << "\n" << run.outputUtf8();
        }
    }
}

TEST_F(ColorDialog, TheAnswerIsEchoedAfterThePromptOfTheAllowedChoices) {
    hostDialogCall().colorAllowed = true;
    ScriptRun run;
    ASSERT_TRUE(run.run("COLORPICK\n12\n"));
    EXPECT_TRUE(run.outputContains(L"Select Color (1-255, BYLAYER or BYBLOCK): 12\n"));
}

TEST_F(ColorDialog, TheEndOfTheInputCancels) {
    hostDialogCall().colorStart = 40;
    ScriptRun run;
    ASSERT_TRUE(run.run("COLORPICK\n"));
    EXPECT_FALSE(hostDialogCall().colorChosen);
    EXPECT_EQ(hostDialogCall().colorIndex, 40);
}

TEST_F(ColorDialog, ByLayerAndByBlockButtonsExistOnlyWhenAllowed) {
    for (bool allowed : {false, true}) {
        runtime::IndexColorDialog dialog(7, allowed, 256);
        EXPECT_EQ(dialog.findChild<QPushButton*>(QStringLiteral("byLayerButton")) != nullptr, allowed);
        EXPECT_EQ(dialog.findChild<QPushButton*>(QStringLiteral("byBlockButton")) != nullptr, allowed);
        EXPECT_EQ(dialog.buttonFor(256) != nullptr, allowed);
    }
}

TEST_F(ColorDialog, TheLayerColorIsShownOnlyForAColor) {
    const std::pair<int, bool> cases[] = {{0, false}, {256, false}, {1, true}, {255, true}, {300, false}};
    for (const auto& [layerColor, shown] : cases) {
        runtime::IndexColorDialog dialog(7, true, layerColor);
        EXPECT_EQ(dialog.findChild<QWidget*>(QStringLiteral("layerColorSwatch")) != nullptr, shown) << layerColor;
    }
}

TEST_F(ColorDialog, SwatchesFollowTheStandardLayout) {
    runtime::IndexColorDialog dialog(7, false, 256);
    for (int index = 1; index <= 255; ++index) {
        EXPECT_NE(dialog.findChild<QAbstractButton*>(QStringLiteral("color%1").arg(index)), nullptr) << index;
    }
    // The grid: one column per hue, saturated shades above the middle (brightest
    // lowest), pale shades below it (brightest highest).
    auto* grid = dialog.findChild<QWidget*>(QStringLiteral("colorGrid"));
    ASSERT_NE(grid, nullptr);
    auto* layout = qobject_cast<QGridLayout*>(grid->layout());
    ASSERT_NE(layout, nullptr);
    const struct {
        int index;
        int row;
        int column;
    } cases[] = {{10, 4, 0}, {18, 0, 0}, {11, 5, 0}, {19, 9, 0}, {240, 4, 23}, {249, 9, 23}, {130, 4, 12}};
    for (const auto& c : cases) {
        auto* swatch = dialog.findChild<QWidget*>(QStringLiteral("color%1").arg(c.index));
        const int at = layout->indexOf(swatch);
        ASSERT_GE(at, 0) << c.index;
        int row = -1, column = -1, rowSpan = 0, columnSpan = 0;
        layout->getItemPosition(at, &row, &column, &rowSpan, &columnSpan);
        EXPECT_EQ(row, c.row) << c.index;
        EXPECT_EQ(column, c.column) << c.index;
    }
    for (int index : {1, 9}) {
        EXPECT_EQ(dialog.findChild<QWidget*>(QStringLiteral("color%1").arg(index))->parentWidget()->objectName(),
                  QStringLiteral("standardColors"));
    }
    for (int index : {250, 255}) {
        EXPECT_EQ(dialog.findChild<QWidget*>(QStringLiteral("color%1").arg(index))->parentWidget()->objectName(),
                  QStringLiteral("greyColors"));
    }
}

TEST_F(ColorDialog, ClickingASwatchWritesItsNameOrNumber) {
    runtime::IndexColorDialog dialog(7, true, 256);
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("colorEdit"));
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->text(), QStringLiteral("white"));  // the start
    dialog.buttonFor(1)->click();
    EXPECT_EQ(edit->text(), QStringLiteral("red"));
    dialog.buttonFor(42)->click();
    EXPECT_EQ(edit->text(), QStringLiteral("42"));
    dialog.buttonFor(256)->click();
    EXPECT_EQ(edit->text(), QStringLiteral("ByLayer"));
}

TEST_F(ColorDialog, OkRefusesATypedNonColorWithAMessage) {
    ScriptRun run;  // captures the command line
    runtime::IndexColorDialog dialog(7, false, 256);
    dialog.findChild<QLineEdit*>(QStringLiteral("colorEdit"))->setText(QStringLiteral("999"));
    dialog.findChild<QPushButton*>(QStringLiteral("okButton"))->click();
    EXPECT_NE(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(run.outputContains(L"** Select Color: There is no color 999"));
    dialog.findChild<QLineEdit*>(QStringLiteral("colorEdit"))->setText(QStringLiteral("Blue"));
    dialog.findChild<QPushButton*>(QStringLiteral("okButton"))->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.chosenIndex(), 5);
}

TEST(IndexPalette, KnownColorsAreTheStandardOnesAsBgr) {
    const std::pair<int, unsigned long> cases[] = {
        {1, 0x0000FF},   {2, 0x00FFFF},   {3, 0x00FF00},   {4, 0xFFFF00},   {5, 0xFF0000},
        {6, 0xFF00FF},   {7, 0xFFFFFF},   {8, 0x414141},   {9, 0x808080},   {10, 0x0000FF},
        {30, 0x007FFF},  {250, 0x333333}, {251, 0x505050}, {252, 0x696969}, {253, 0x828282},
        {254, 0xBEBEBE}, {255, 0xFFFFFF},
    };
    for (const auto& [index, bgr] : cases) EXPECT_EQ(kcedGetRGB(index), bgr) << index;
}

TEST(IndexPalette, GridShadesKeepTheirHueAndDarkenDownwards) {
    for (int hue = 0; hue < 24; ++hue) {
        const int first = 10 + hue * 10;
        int previousMax = 256;
        for (int shade = 0; shade < 10; shade += 2) {
            const db::Rgb saturated = db::rgbOfIndexColor(first + shade);
            const db::Rgb pale = db::rgbOfIndexColor(first + shade + 1);
            const int maxChannel = std::max({saturated.red, saturated.green, saturated.blue});
            EXPECT_LT(maxChannel, previousMax) << first + shade;
            EXPECT_EQ(std::min({saturated.red, saturated.green, saturated.blue}), 0) << first + shade;
            // The pale shade has the same brightest channel and lifts the others.
            EXPECT_EQ(std::max({pale.red, pale.green, pale.blue}), maxChannel) << first + shade + 1;
            EXPECT_GT(std::min({pale.red, pale.green, pale.blue}), 0) << first + shade + 1;
            previousMax = maxChannel;
        }
    }
}

TEST(IndexPalette, NamesAndNumbersParse) {
    const std::pair<const wchar_t*, std::optional<int>> cases[] = {
        {L"RED", 1},      {L" magenta ", 6}, {L"ByLayer", 256}, {L"byblock", 0}, {L"17", 17},
        {L"+3", 3},       {L"-2", -2},       {L"1e2", std::nullopt}, {L"", std::nullopt}, {L"red1", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(db::parseIndexColor(text), expected) << QString::fromWCharArray(text).toStdString();
    }
}

}  // namespace
}  // namespace korva::test
