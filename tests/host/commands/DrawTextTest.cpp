// -TEXT as a script: start point, height, rotation and a text with spaces;
// every justification keyword; Align and Fit between two points; a style with
// a fixed height; a text in a turned UCS.
#include <gtest/gtest.h>

#include <cmath>

#include "DrawTestSupport.h"
#include "db/ObjectAccess.h"
#include "db/TextMetrics.h"
#include "editor/Coordinates.h"
#include "editor/SystemVariables.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::drawedit::expectAngleNear;
using test::drawedit::expectCleanAudit;
using test::drawedit::expectPointNear;
using test::drawedit::modelSpaceEntities;
using test::drawedit::Opened;

constexpr double kPi = 3.14159265358979323846;

// How far a string reaches along its baseline at a height and width factor.
double textLength(const char* text, double height, double widthFactor) {
    db::TextStyleMetrics style;
    style.height = height;
    style.widthFactor = widthFactor;
    return db::measureText(text, style).right;
}

TEST(TextCommand, MakesATextWithSpacesAndRemembersItsHeight) {
    ScriptRun run;
    ASSERT_TRUE(run.run("-TEXT\n1,2\n3.5\n30\nHello brave world\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u);
    Opened<KcDbText> text(ids[0]);
    ASSERT_TRUE(text);
    EXPECT_STREQ(text->textStringConst(), L"Hello brave world");
    expectPointNear(text->position(), {1, 2, 0}, "start point");
    EXPECT_DOUBLE_EQ(text->height(), 3.5);
    expectAngleNear(text->rotation(), kPi / 6, "rotation");
    EXPECT_TRUE(text->isDefaultAlignment());
    EXPECT_DOUBLE_EQ(editor::SystemVariables::instance().real(L"TEXTSIZE"), 3.5) << "the next default height";
    EXPECT_TRUE(run.outputContains(L"Specify height <2.5000>: "));
    expectCleanAudit(run);
}

TEST(TextCommand, EveryJustificationKeepsItsPointAsTheAlignmentPoint) {
    const struct {
        const char* keyword;
        KcDb::TextHorzMode horizontal;
        KcDb::TextVertMode vertical;
    } cases[] = {
        {"C", KcDb::kTextCenter, KcDb::kTextBase},   {"R", KcDb::kTextRight, KcDb::kTextBase},
        {"M", KcDb::kTextMid, KcDb::kTextBase},      {"TL", KcDb::kTextLeft, KcDb::kTextTop},
        {"TC", KcDb::kTextCenter, KcDb::kTextTop},   {"TR", KcDb::kTextRight, KcDb::kTextTop},
        {"ML", KcDb::kTextLeft, KcDb::kTextVertMid}, {"MC", KcDb::kTextCenter, KcDb::kTextVertMid},
        {"MR", KcDb::kTextRight, KcDb::kTextVertMid}, {"BL", KcDb::kTextLeft, KcDb::kTextBottom},
        {"BC", KcDb::kTextCenter, KcDb::kTextBottom}, {"BR", KcDb::kTextRight, KcDb::kTextBottom},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        ASSERT_TRUE(run.run(std::string("-TEXT\nJ\n") + c.keyword + "\n5,5\n2\n0\nABC\n")) << c.keyword;
        const auto ids = modelSpaceEntities(run);
        ASSERT_EQ(ids.size(), 1u) << c.keyword;
        Opened<KcDbText> text(ids[0]);
        EXPECT_EQ(text->horizontalMode(), c.horizontal) << c.keyword;
        EXPECT_EQ(text->verticalMode(), c.vertical) << c.keyword;
        expectPointNear(text->alignmentPoint(), {5, 5, 0}, c.keyword);
        // The insertion point lies left of (or at) the point for left, centre and right texts alike.
        const double length = textLength("ABC", 2.0, 1.0);
        const double expectedShift = c.horizontal == KcDb::kTextLeft ? 0.0
                                     : c.horizontal == KcDb::kTextRight ? length
                                                                        : length / 2.0;
        EXPECT_NEAR(5.0 - text->position().x, expectedShift, 1e-9) << c.keyword;
    }
}

TEST(TextCommand, AlignScalesTheHeightAndFitTheWidthBetweenTwoPoints) {
    {
        ScriptRun run;
        ASSERT_TRUE(run.run("-TEXT\nJ\nA\n0,0\n10,10\nABCDE\n"));
        Opened<KcDbText> text(modelSpaceEntities(run).at(0));
        EXPECT_EQ(text->horizontalMode(), KcDb::kTextAlign);
        expectPointNear(text->position(), {0, 0, 0}, "first end");
        expectPointNear(text->alignmentPoint(), {10, 10, 0}, "second end");
        expectAngleNear(text->rotation(), kPi / 4, "the baseline's angle");
        EXPECT_NEAR(text->height(), std::sqrt(200.0) / textLength("ABCDE", 1.0, 1.0), 1e-9);
        EXPECT_FALSE(run.outputContains(L"Specify height")) << "Align takes the height from the baseline";
    }
    {
        ScriptRun run;
        ASSERT_TRUE(run.run("-TEXT\nJ\nF\n0,0\n10,0\n2\nABCDE\n"));
        Opened<KcDbText> text(modelSpaceEntities(run).at(0));
        EXPECT_EQ(text->horizontalMode(), KcDb::kTextFit);
        EXPECT_DOUBLE_EQ(text->height(), 2.0);
        EXPECT_NEAR(text->widthFactor(), 10.0 / textLength("ABCDE", 2.0, 1.0), 1e-9);
        expectPointNear(text->alignmentPoint(), {10, 0, 0}, "second end");
    }
}

TEST(TextCommand, AStyleWithAFixedHeightAsksNoHeight) {
    ScriptRun run;
    KcDbTextStyleTable* styles = nullptr;
    ASSERT_EQ(run.document().database().getTextStyleTable(styles, KcDb::kForWrite), Kcad::eOk);
    auto* style = new KcDbTextStyleTableRecord();
    style->setName(L"TITLE");
    style->setTextSize(5.0);
    ASSERT_EQ(styles->add(style), Kcad::eOk);
    style->close();
    styles->close();
    ASSERT_TRUE(run.run("-TEXT\nS\nTITLE\n0,0\n0\nBig words\n"));
    Opened<KcDbText> text(modelSpaceEntities(run).at(0));
    EXPECT_DOUBLE_EQ(text->height(), 5.0);
    EXPECT_STREQ(text->textStringConst(), L"Big words");
    EXPECT_EQ(editor::SystemVariables::instance().text(L"TEXTSTYLE"), L"TITLE");
    EXPECT_TRUE(run.outputContains(L"Current text style:  \"TITLE\"  Text height:  5.0000"));
}

TEST(TextCommand, AnUnknownStyleIsRefusedAndTheStyleStays) {
    ScriptRun run;
    ASSERT_TRUE(run.run("-TEXT\nS\nNOSUCH\n\n0,0\n\n\nx\n"));
    EXPECT_TRUE(run.outputContains(L"Cannot find text style \"NOSUCH\"."));
    EXPECT_EQ(editor::SystemVariables::instance().text(L"TEXTSTYLE"), L"Standard");
    EXPECT_EQ(modelSpaceEntities(run).size(), 1u);
}

TEST(TextCommand, ATextInATurnedUcsRunsAlongItsXAxis) {
    ScriptRun run;
    editor::setCurrentUcs(run.document(), {{10, 0, 0}, {0, 1, 0}, {-1, 0, 0}});
    ASSERT_TRUE(run.run("-TEXT\n0,0\n1\n0\nup\n"));
    Opened<KcDbText> text(modelSpaceEntities(run).at(0));
    expectPointNear(text->position(), {10, 0, 0}, "the UCS origin");
    expectAngleNear(text->rotation(), kPi / 2, "along world Y");
}

TEST(TextCommand, AnEmptyTextMakesNothing) {
    ScriptRun run;
    ASSERT_TRUE(run.run("-TEXT\n0,0\n1\n0\n\n"));
    EXPECT_TRUE(modelSpaceEntities(run).empty());
}

}  // namespace
}  // namespace korva
