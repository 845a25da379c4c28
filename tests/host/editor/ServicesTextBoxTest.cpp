// kcedTextBox: the box of a text's data list comes from db::measureText with
// the list's height, width factor, oblique angle and style font; generation
// flags 2 and 4 mirror it; lists that are not texts are refused.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "db/ResultBuffers.h"
#include "db/TextMetrics.h"
#include "editor/SystemVariables.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace korva {
namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

constexpr const char* kSlantedStyle =
    "  0\nSTYLE\n  5\nA30\n330\n3\n100\nAcDbSymbolTableRecord\n100\nAcDbTextStyleTableRecord\n  2\nSlanted\n 70\n0\n"
    " 40\n0.0\n 41\n0.5\n 50\n20.0\n 71\n0\n 42\n2.5\n  3\nromans.shx\n  4\nbigfont.shx\n";

constexpr const char* kText =
    "  0\nTEXT\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 40\n2.0\n"
    "  1\nHello\n 50\n30.0\n 41\n0.8\n 51\n15.0\n  7\nSlanted\n100\nAcDbText\n";

std::string drawingWithText() {
    std::string text = test::drawingText(kText);
    const size_t table = text.find("\n  2\nSTYLE\n");
    text.insert(text.find("  0\nENDTAB", table), kSlantedStyle);
    return text;
}

struct Chain {
    resbuf* head = nullptr;
    ~Chain() { db::releaseResbufs(head); }
    resbuf* item(int code) const {
        for (resbuf* rb = head; rb; rb = rb->rbnext) {
            if (rb->restype == code) return rb;
        }
        return nullptr;
    }
};

// A measurer that records what it was asked and answers a fixed box.
struct Recorded {
    std::string text;
    db::TextStyleMetrics style;
    std::string font;
};
Recorded g_recorded;

db::TextBox recordingMeasurer(std::string_view text, const db::TextStyleMetrics& style) {
    g_recorded = {std::string(text), style, std::string(style.fontFile)};
    return {-0.5, 10.0, -0.7, 2.0};
}

class ServicesTextBox : public ::testing::Test {
protected:
    ServicesTextBox() : run_(test::ScriptRun::fromDxfText(drawingWithText())) {}
    ~ServicesTextBox() override { db::installTextMeasurer(hostMeasurer_); }

    resbuf* textList() {
        kcad_name name;
        EXPECT_EQ(kcdbHandEnt(L"E1", name), RTNORM);
        list_.head = kcdbEntGet(name);
        return list_.head;
    }

    test::ScriptRun run_;
    const db::TextMeasurer hostMeasurer_ = db::installedTextMeasurer();
    Chain list_;
};

// The list's height, width factor, oblique (radians) and its style's font reach the measurer.
TEST_F(ServicesTextBox, MeasuresWithTheListsMetrics) {
    db::installTextMeasurer(&recordingMeasurer);
    kcad_point lowerLeft, upperRight;
    ASSERT_EQ(kcedTextBox(textList(), lowerLeft, upperRight), RTNORM);
    EXPECT_EQ(g_recorded.text, "Hello");
    EXPECT_DOUBLE_EQ(g_recorded.style.height, 2.0);
    EXPECT_DOUBLE_EQ(g_recorded.style.widthFactor, 0.8);
    EXPECT_NEAR(g_recorded.style.oblique, 15 * kDegree, 1e-12);
    EXPECT_EQ(g_recorded.font, "romans.shx");
}

// Generation flags 2 (backward) and 4 (upside down) mirror the box about the insertion point.
TEST_F(ServicesTextBox, GenerationFlagsMirrorTheBox) {
    db::installTextMeasurer(&recordingMeasurer);  // box x -0.5 .. 10, y -0.7 .. 2
    const struct {
        short flags;
        KcGePoint3d lowerLeft, upperRight;
    } cases[] = {
        {0, {-0.5, -0.7, 0}, {10, 2, 0}},
        {2, {-10, -0.7, 0}, {0.5, 2, 0}},
        {4, {-0.5, -2, 0}, {10, 0.7, 0}},
        {6, {-10, -2, 0}, {0.5, 0.7, 0}},
    };
    resbuf* list = textList();
    for (const auto& c : cases) {
        ASSERT_NE(list_.item(71), nullptr);
        list_.item(71)->resval.rint = c.flags;
        kcad_point lowerLeft, upperRight;
        ASSERT_EQ(kcedTextBox(list, lowerLeft, upperRight), RTNORM);
        EXPECT_EQ(KcGePoint3d(lowerLeft[0], lowerLeft[1], lowerLeft[2]), c.lowerLeft) << c.flags;
        EXPECT_EQ(KcGePoint3d(upperRight[0], upperRight[1], upperRight[2]), c.upperRight) << c.flags;
    }
}

// With the host's own measurer the box is exactly what measureText gives for those metrics.
TEST_F(ServicesTextBox, AgreesWithMeasureText) {
    db::TextStyleMetrics metrics;
    metrics.height = 2.0;
    metrics.widthFactor = 0.8;
    metrics.oblique = 15 * kDegree;
    metrics.fontFile = "romans.shx";
    metrics.bigFontFile = "bigfont.shx";
    const db::TextBox expected = db::measureText("Hello", metrics);
    kcad_point lowerLeft, upperRight;
    ASSERT_EQ(kcedTextBox(textList(), lowerLeft, upperRight), RTNORM);
    EXPECT_DOUBLE_EQ(lowerLeft[0], expected.left);
    EXPECT_DOUBLE_EQ(lowerLeft[1], expected.bottom);
    EXPECT_DOUBLE_EQ(upperRight[0], expected.right);
    EXPECT_DOUBLE_EQ(upperRight[1], expected.top);
    EXPECT_GT(upperRight[0] - lowerLeft[0], 0.0) << "a text with characters has a width";
}

// What a short list leaves out comes from its style, TEXTSTYLE and TEXTSIZE; ATTDEF shows its tag.
TEST_F(ServicesTextBox, ShortListsTakeDefaults) {
    db::installTextMeasurer(&recordingMeasurer);
    ASSERT_EQ(editor::SystemVariables::instance().setValue(L"TEXTSIZE", editor::VarValue::ofReal(3.5)), RTNORM);
    kcad_point lowerLeft, upperRight;

    Chain bare{kcutBuildList(1, L"abc", 0)};
    ASSERT_EQ(kcedTextBox(bare.head, lowerLeft, upperRight), RTNORM);
    EXPECT_EQ(g_recorded.text, "abc");
    EXPECT_DOUBLE_EQ(g_recorded.style.height, 3.5);
    EXPECT_DOUBLE_EQ(g_recorded.style.widthFactor, 1.0);

    Chain styled{kcutBuildList(1, L"abc", 7, L"slanted", 0)};
    ASSERT_EQ(kcedTextBox(styled.head, lowerLeft, upperRight), RTNORM);
    EXPECT_DOUBLE_EQ(g_recorded.style.widthFactor, 0.5);
    EXPECT_NEAR(g_recorded.style.oblique, 20 * kDegree, 1e-12);
    EXPECT_EQ(g_recorded.font, "romans.shx");

    Chain attdef{kcutBuildList(RTDXF0, L"ATTDEF", 1, L"default", 2, L"TAGNAME", 40, 1.0, 0)};
    ASSERT_EQ(kcedTextBox(attdef.head, lowerLeft, upperRight), RTNORM);
    EXPECT_EQ(g_recorded.text, "TAGNAME");
    EXPECT_DOUBLE_EQ(g_recorded.style.height, 1.0);
}

// Lists that are not single-line texts are refused, and the corners stay as they were.
TEST_F(ServicesTextBox, OtherListsAreRefused) {
    Chain line{kcutBuildList(RTDXF0, L"LINE", 10, std::array<double, 3>{0, 0, 0}.data(), 0)};
    Chain mtext{kcutBuildList(RTDXF0, L"MTEXT", 1, L"abc", 0)};
    Chain noText{kcutBuildList(40, 2.0, 0)};
    for (const resbuf* list : {line.head, mtext.head, noText.head, static_cast<resbuf*>(nullptr)}) {
        kcad_point lowerLeft = {9, 9, 9}, upperRight = {9, 9, 9};
        EXPECT_EQ(kcedTextBox(list, lowerLeft, upperRight), RTERROR);
        EXPECT_EQ(lowerLeft[0], 9);
        EXPECT_EQ(upperRight[1], 9);
    }
}

}  // namespace
}  // namespace korva
