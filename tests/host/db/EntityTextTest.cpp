// Single-line text: the text box estimate, justification (the alignment point
// is the master of every justification but left/baseline) with the boxes of the
// font the template's Standard style uses, the defaults of a new text, and the
// attribute variants.
#include <cmath>

#include "../fonts/FontExpectations.h"
#include "EntityTestSupport.h"
#include "db/RecordFields.h"
#include "db/TextMetrics.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

constexpr double kPi = 3.14159265358979323846;

void expectPoint(const KcGePoint3d& actual, double x, double y, double z = 0.0) {
    EXPECT_NEAR(actual.x, x, 1e-9);
    EXPECT_NEAR(actual.y, y, 1e-9);
    EXPECT_NEAR(actual.z, z, 1e-9);
}

struct EstimateCase {
    const char* text;
    double characters;  // shown characters, each 0.6 x height x width factor wide
};

// %% codes show one character, %%u, %%o and %%k none; carets and UTF-8 sequences one.
TEST(TextMetrics, EstimateCountsTheCharactersATextShows) {
    const EstimateCase cases[] = {
        {"ABC", 3},      {"%%d30", 3},    {"%%c10%%p", 4}, {"%%%", 1},     {"%%uunder%%u", 5},
        {"%%O", 0},      {"%%1234", 2},   {"a^Jb", 3},     {"\xC3\xA4\xC3\xB6", 2}, {"\\U+00E9x", 2},
        {"50%", 3},
    };
    const db::TextStyleMetrics style{2.0, 1.5};
    for (const EstimateCase& c : cases) {
        const db::TextBox box = db::estimateTextBox(c.text, style);
        EXPECT_DOUBLE_EQ(box.right - box.left, c.characters * 0.6 * 2.0 * 1.5) << c.text;
        if (c.characters > 0) {
            EXPECT_DOUBLE_EQ(box.bottom, -0.3 * 2.0) << c.text;
            EXPECT_DOUBLE_EQ(box.top, 2.0) << c.text;
        }
    }
    const db::TextBox empty = db::estimateTextBox("", style);
    EXPECT_EQ(empty.top, 0.0);
    EXPECT_EQ(empty.right, 0.0);
}

db::TextBox fixedBox(std::string_view, const db::TextStyleMetrics&) { return {0.0, 10.0, -1.0, 3.0}; }

// An installed measurer replaces the one before until it is removed; without any, texts are estimated.
TEST(TextMetrics, InstalledMeasurerIsUsed) {
    const db::TextMeasurer host = db::installTextMeasurer(&fixedBox);
    const db::TextBox measured = db::measureText("x", {});
    EXPECT_EQ(db::installTextMeasurer(nullptr), &fixedBox);
    const db::TextBox estimated = db::measureText("x", {});
    db::installTextMeasurer(host);
    EXPECT_EQ(measured.right, 10.0);
    EXPECT_DOUBLE_EQ(estimated.right, 0.6 * 2.5);
}

// The width of a text in the template's Standard style (SHX, so the fallback font) at height 2.
db::TextBox standardBox(const char* text) { return FontExpectation(kFallbackFamily).box(text, 2.0); }

// Where the alignment point lies in a box, in the text's own axes from the insertion point.
enum class Along { Start, Centre, End };
enum class Across { Baseline, Bottom, Middle, Top };

struct JustificationCase {
    int horizontal;
    int vertical;
    double rotationDegrees;
    Along dx;
    Across dy;
};

void PrintTo(const JustificationCase& c, std::ostream* out) {
    *out << c.horizontal << "/" << c.vertical << " at " << c.rotationDegrees;
}

class TextJustification : public ::testing::TestWithParam<JustificationCase> {};

// "ABCDgj" at height 2 is measured with its font; the insertion point is the
// alignment point less the offset into the box, turned with the text.
TEST_P(TextJustification, InsertionPointFollowsTheAlignmentPoint) {
    const JustificationCase& c = GetParam();
    const db::TextBox box = standardBox("ABCDgj");
    const double dx = c.dx == Along::Start ? 0.0 : c.dx == Along::End ? box.right : (box.left + box.right) / 2.0;
    const double dy = c.dy == Across::Baseline ? 0.0
                      : c.dy == Across::Bottom ? box.bottom
                      : c.dy == Across::Middle ? 1.0
                                               : 2.0;
    const std::string dxf = modernDxf(
        {modernHead("TEXT", "100", "AcDbText") +
         dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "2.0"}, {1, "ABCDgj"},
                  {50, std::to_string(c.rotationDegrees)}, {72, std::to_string(c.horizontal)}, {11, "10.0"},
                  {21, "5.0"}, {31, "0.0"}, {100, "AcDbText"}, {73, std::to_string(c.vertical)}})});
    auto database = loadDatabase(dxf);
    ASSERT_TRUE(database);
    Opened<KcDbText> text(*database, 0x100, KcDb::kForWrite);
    ASSERT_TRUE(text);
    ASSERT_EQ(text->adjustAlignment(), Kcad::eOk);
    const double a = c.rotationDegrees * kPi / 180.0;
    expectPoint(text->position(), 10.0 - (dx * std::cos(a) - dy * std::sin(a)),
                5.0 - (dx * std::sin(a) + dy * std::cos(a)));
    expectPoint(text->alignmentPoint(), 10.0, 5.0);
}

INSTANTIATE_TEST_SUITE_P(Entities, TextJustification,
                         ::testing::Values(JustificationCase{1, 0, 0, Along::Centre, Across::Baseline},
                                           JustificationCase{2, 0, 0, Along::End, Across::Baseline},
                                           JustificationCase{4, 0, 0, Along::Centre, Across::Middle},
                                           JustificationCase{0, 1, 0, Along::Start, Across::Bottom},
                                           JustificationCase{1, 2, 0, Along::Centre, Across::Middle},
                                           JustificationCase{2, 3, 0, Along::End, Across::Top},
                                           JustificationCase{2, 3, 90, Along::End, Across::Top},
                                           JustificationCase{1, 1, 30, Along::Centre, Across::Bottom}));

std::string rightText(std::string_view handle, std::string_view horizontal = "2") {
    return modernHead("TEXT", handle, "AcDbText") +
           dxfTags({{10, "7.6"}, {20, "5.0"}, {30, "0.0"}, {40, "2.0"}, {1, "AB"}, {72, horizontal}, {11, "10.0"},
                    {21, "5.0"}, {31, "0.0"}, {100, "AcDbText"}});
}

// A longer string of a right-aligned text grows to the left of its alignment point.
TEST(EntityText, NewStringOfARightAlignedTextMovesItsStart) {
    auto database = loadDatabase(modernDxf({rightText("100")}));
    ASSERT_TRUE(database);
    Opened<KcDbText> text(*database, 0x100, KcDb::kForWrite);
    ASSERT_TRUE(text);
    ASSERT_EQ(text->setTextString(L"ABCD"), Kcad::eOk);
    const double width = standardBox("ABCD").right;
    expectPoint(text->position(), 10.0 - width, 5.0);
    ASSERT_EQ(text->setAlignmentPoint({20, 0, 0}), Kcad::eOk);
    expectPoint(text->position(), 20.0 - width, 0.0);
    expectPoint(text->alignmentPoint(), 20, 0);
}

// Moving a justified text moves both points; an aligned text keeps its second point.
TEST(EntityText, SetPositionMovesAJustifiedTextWhole) {
    auto database = loadDatabase(modernDxf({rightText("100") + rightText("101", "3")}));
    ASSERT_TRUE(database);
    {
        Opened<KcDbText> right(*database, 0x100, KcDb::kForWrite);
        ASSERT_EQ(right->setPosition({0, 0, 0}), Kcad::eOk);
        expectPoint(right->position(), 0, 0);
        expectPoint(right->alignmentPoint(), 10.0 - 7.6, 0);  // both points move by the same offset
    }
    Opened<KcDbText> aligned(*database, 0x101, KcDb::kForWrite);
    ASSERT_EQ(aligned->setPosition({0, 0, 0}), Kcad::eOk);
    ASSERT_EQ(aligned->setTextString(L"ABCDEFG"), Kcad::eOk);
    expectPoint(aligned->position(), 0, 0);
    expectPoint(aligned->alignmentPoint(), 10, 5);
}

// A justified text set back to left/baseline stays where its box was.
TEST(EntityText, BackToLeftKeepsTheInsertionPoint) {
    auto database = loadDatabase(modernDxf({rightText("100")}));
    ASSERT_TRUE(database);
    Opened<KcDbText> text(*database, 0x100, KcDb::kForWrite);
    ASSERT_EQ(text->setHorizontalMode(KcDb::kTextLeft), Kcad::eOk);
    EXPECT_TRUE(text->isDefaultAlignment());
    expectPoint(text->position(), 7.6, 5.0);
}

class WorkingDatabase {
public:
    explicit WorkingDatabase(KcDbDatabase* database) { kcdbHostApplicationServices()->setWorkingDatabase(database); }
    ~WorkingDatabase() { kcdbHostApplicationServices()->setWorkingDatabase(nullptr); }
    WorkingDatabase(const WorkingDatabase&) = delete;
    WorkingDatabase& operator=(const WorkingDatabase&) = delete;
};

const std::string kFixedStyle =
    dxfTags({{0, "STYLE"}, {5, "95"}, {330, "3"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbTextStyleTableRecord"},
             {2, "FIXED"}, {70, "0"}, {40, "7.5"}, {41, "1.0"}, {50, "0.0"}, {71, "0"}, {42, "2.5"}, {3, "txt"},
             {4, ""}});

// Height 0 takes the style's fixed height, else the drawing's TEXTSIZE; no
// style takes the current one; without a database, 0.2 and "Standard".
TEST(EntityText, NewTextTakesItsHeightFromTheStyleOrTheDrawing) {
    auto database = loadDatabase(modernDxf({{}, {}, kFixedStyle}));
    ASSERT_TRUE(database);
    database->drawing().header.setReal("$TEXTSIZE", 40, 3.25);
    const KcDbObjectId fixed = idOf(*database, 0x95);
    {
        WorkingDatabase working(database.get());
        KcDbText styled({1, 2, 0}, L"a", fixed, 0.0, kPi / 2);
        EXPECT_EQ(styled.height(), 7.5);
        EXPECT_EQ(styled.textStyle(), fixed);
        EXPECT_NEAR(styled.rotation(), kPi / 2, 1e-12);
        EXPECT_NEAR(db::fieldReal(db::ObjectAccess::record(styled), "AcDbText", 50), 90.0, 1e-9);
        KcDbText current({1, 2, 0}, L"b");
        EXPECT_EQ(current.height(), 3.25);
        EXPECT_EQ(db::fieldText(db::ObjectAccess::record(current), "AcDbText", 7), "Standard");
        KcDbText explicitHeight({1, 2, 0}, L"c", fixed, 1.5);
        EXPECT_EQ(explicitHeight.height(), 1.5);
    }
    KcDbText alone({0, 0, 0}, L"d");
    EXPECT_EQ(alone.height(), 0.2);
    EXPECT_EQ(db::fieldText(db::ObjectAccess::record(alone), "AcDbText", 7), "Standard");
    EXPECT_STREQ(alone.textStringConst(), L"d");
}

// A text in a plane of its own: the API speaks world coordinates, the tags OCS.
TEST(EntityText, PositionIsWorldAndStoredInTheOcs) {
    const std::string dxf = modernDxf(
        {modernHead("TEXT", "100", "AcDbText") +
         dxfTags({{10, "1.0"}, {20, "2.0"}, {30, "3.0"}, {40, "1.0"}, {1, "x"}, {210, "0.0"}, {220, "0.0"},
                  {230, "-1.0"}, {100, "AcDbText"}})});
    auto database = loadDatabase(dxf);
    ASSERT_TRUE(database);
    Opened<KcDbText> text(*database, 0x100, KcDb::kForWrite);
    expectPoint(text->position(), -1, 2, -3);
    ASSERT_EQ(text->setPosition({5, 6, 7}), Kcad::eOk);
    expectPoint(db::fieldPoint(recordOf(*database, 0x100), "AcDbText", 10), -5, 6, -7);
    ASSERT_EQ(text->setNormal({0, 0, 1}), Kcad::eOk);
    expectPoint(text->position(), 5, 6, 7);
    expectPoint(db::fieldPoint(recordOf(*database, 0x100), "AcDbText", 10), 5, 6, 7);
}

// R12 attributes keep their vertical justification in 74 and their field length in 73.
TEST(EntityText, R12AttributeVerticalModeIsGroup74) {
    const std::string entities =
        dxfTags({{0, "INSERT"}, {5, "24"}, {8, "0"}, {66, "1"}, {2, "BLK"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}}) +
        dxfTags({{0, "ATTRIB"}, {5, "25"}, {8, "0"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {1, "value"},
                 {2, "TAG"}, {70, "9"}, {73, "12"}, {72, "2"}, {74, "3"}, {11, "4.0"}, {21, "0.0"}, {31, "0.0"}}) +
        dxfTags({{0, "SEQEND"}, {5, "26"}, {8, "0"}});
    const std::string blocks = dxfTags({{0, "BLOCK"}, {8, "0"}, {2, "BLK"}, {70, "2"}, {10, "0.0"}, {20, "0.0"},
                                        {30, "0.0"}}) +
                               dxfTags({{0, "ENDBLK"}, {8, "0"}});
    auto database = loadDatabase(r12Dxf(entities, blocks));
    ASSERT_TRUE(database);
    Opened<KcDbAttribute> attribute(*database, 0x25, KcDb::kForRead);
    ASSERT_TRUE(attribute);
    EXPECT_EQ(attribute->verticalMode(), KcDb::kTextTop);
    EXPECT_EQ(attribute->horizontalMode(), KcDb::kTextRight);
    EXPECT_EQ(attribute->fieldLength(), 12);
    EXPECT_TRUE(attribute->isInvisible());
    EXPECT_TRUE(attribute->isPreset());
    EXPECT_FALSE(attribute->isConstant());
}

}  // namespace
}  // namespace korva::test
