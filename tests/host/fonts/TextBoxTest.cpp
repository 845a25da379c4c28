// Text boxes of single-line texts in real drawings agree with the fonts' own
// metrics: the cap height scaled to the text height, advances and ink (so
// descenders reach below the baseline), width factor and oblique angle, the %%
// codes, and every justification of a TEXT placed through the database.
#include <gtest/gtest.h>

#include <cmath>

#include "FontTestSupport.h"
#include "db/RecordFields.h"
#include "db/TextCodes.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

constexpr double kPi = 3.14159265358979323846;
// Font units are exact at the em size the fonts are read at: boxes agree to rounding.
constexpr double kTolerance = 1e-6;

struct BoxCase {
    const char* fontFile;
    const char* family;  // extended data
    int64_t flags;
    const char* expectedFamily;
    TextSpec text;
};

void PrintTo(const BoxCase& c, std::ostream* out) {
    *out << c.fontFile << c.family << " '" << c.text.text << "' h " << c.text.height << " w " << c.text.widthFactor
         << " oblique " << c.text.obliqueDegrees;
}

class TextBoxes : public ::testing::TestWithParam<BoxCase> {};

// The box of a TEXT measured through its record's style is the box its font gives.
TEST_P(TextBoxes, AgreeWithTheFontsMetrics) {
    const BoxCase& c = GetParam();
    DxfParts parts{textEntity("100", "CASE", c.text)};
    parts.styles = styleRecord("90", "CASE", c.fontFile, c.family, c.flags);
    auto database = loadDatabase(modernDxf(parts));
    ASSERT_TRUE(database);
    const db::ObjectRecord& record = recordOf(*database, 0x100);
    const db::TextBox box = db::measureText(db::fieldText(record, "AcDbText", 1), db::textStyleOf(record));

    const bool bold = (c.flags & kBoldFlags & ~kRegularFlags) != 0;
    const FontExpectation font(QString::fromLatin1(c.expectedFamily), bold);
    const db::TextBox expected = font.box(QString::fromStdString(c.text.text), c.text.height, c.text.widthFactor,
                                          c.text.obliqueDegrees * kPi / 180.0);
    EXPECT_TRUE(boxesNear(box, expected, kTolerance * c.text.height));
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, TextBoxes,
    ::testing::Values(BoxCase{"arial.ttf", "", 0, "Liberation Sans", {"Hxgjy", 2.5}},
                      BoxCase{"arial.ttf", "", 0, "Liberation Sans", {"Hxgjy", 10.0, 0.75}},
                      BoxCase{"times.ttf", "", 0, "Liberation Serif", {"Typography", 3.0, 1.0, 15.0}},
                      BoxCase{"cour.ttf", "", 0, "Liberation Mono", {"Mono 42", 1.0, 1.5, -10.0}},
                      BoxCase{"txt", "", 0, "DejaVu Sans", {"ABC abc", 2.0}},
                      BoxCase{"DejaVuSans.ttf", "", 0, "DejaVu Sans", {"\xC3\x85\xC3\x89 \xC3\x9C" "ber", 1.0}},
                      BoxCase{"", "Times New Roman", kBoldFlags, "Liberation Serif", {"Bold 123", 4.0, 1.0, 5.0}}));

struct ShapeCase {
    const char* text;
    bool descends;  // reaches below the baseline
    bool rises;     // reaches above the cap height
};

void PrintTo(const ShapeCase& c, std::ostream* out) { *out << c.text; }

class TextBoxShape : public ::testing::TestWithParam<ShapeCase> {};

// Flat capitals stand on the baseline and reach the text height exactly;
// descenders and accents go beyond (round letters, dots and ascenders overshoot a little).
TEST_P(TextBoxShape, CapitalsSpanTheHeightAndOtherGlyphsReachBeyond) {
    const ShapeCase& c = GetParam();
    const db::TextStyleMetrics style{2.0, 1.0, 0.0, "arial.ttf"};
    const db::TextBox box = db::measureText(c.text, style);
    if (c.descends) {
        EXPECT_LT(box.bottom, -0.1 * style.height);
    } else {
        EXPECT_NEAR(box.bottom, 0.0, 1e-9);
    }
    if (c.rises) {
        EXPECT_GT(box.top, 1.05 * style.height);
    } else {
        EXPECT_NEAR(box.top, style.height, kTolerance);
    }
}

INSTANTIATE_TEST_SUITE_P(Fonts, TextBoxShape,
                         ::testing::Values(ShapeCase{"HEIL", false, false}, ShapeCase{"gpqy", true, false},
                                           ShapeCase{"\xC3\x85", false, true}, ShapeCase{"Hg\xC3\x89", true, true}));

struct CodeCase {
    const char* coded;
    const char* shown;    // UTF-8 of what the codes show
    bool underlined;      // the box reaches down to the underline
    bool overlined;       // ... up to the overline
};

void PrintTo(const CodeCase& c, std::ostream* out) { *out << c.coded; }

class TextCodes : public ::testing::TestWithParam<CodeCase> {};

// A coded text measures as the characters it shows; switches add no width, only their bars.
TEST_P(TextCodes, MeasureAsTheCharactersTheyShow) {
    const CodeCase& c = GetParam();
    const db::TextStyleMetrics style{2.0, 1.0, 0.0, "arial.ttf"};
    const FontExpectation font(QStringLiteral("Liberation Sans"));
    const double underline = c.underlined ? font.underlineBottom() : 0.0;
    db::TextBox expected = font.box(QString::fromUtf8(c.shown), style.height, 1.0, 0.0, underline);
    if (c.overlined) expected.top = std::max(expected.top, style.height * (1.0 - font.underlineBottom()));
    EXPECT_TRUE(boxesNear(db::measureText(c.coded, style), expected, kTolerance * style.height));
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, TextCodes,
    ::testing::Values(CodeCase{"%%d45", "\xC2\xB0" "45", false, false},
                      CodeCase{"%%D45", "\xC2\xB0" "45", false, false},
                      CodeCase{"%%p0.5", "\xC2\xB1" "0.5", false, false}, CodeCase{"50%%%", "50%", false, false},
                      CodeCase{"%%065%%066", "AB", false, false}, CodeCase{"A^ B", "A^B", false, false},
                      CodeCase{"\\U+00C4x", "\xC3\x84x", false, false},
                      CodeCase{"%%uUnder%%u", "Under", true, false}, CodeCase{"%%uOpen", "Open", true, false},
                      CodeCase{"%%oOver%%o", "Over", false, true}, CodeCase{"%%kStrike%%k", "Strike", false, false},
                      CodeCase{"a%%u%%ub", "ab", false, false}));

// Texts that show nothing have an empty box.
TEST(TextBoxes, NothingShownIsAnEmptyBox) {
    const db::TextStyleMetrics style{2.0, 1.0, 0.0, "arial.ttf"};
    for (const char* text : {"", "%%u", "%%o%%k%%u"}) {
        const db::TextBox box = db::measureText(text, style);
        EXPECT_EQ(box.left, 0.0) << text;
        EXPECT_EQ(box.right, 0.0) << text;
        EXPECT_EQ(box.bottom, 0.0) << text;
        EXPECT_EQ(box.top, 0.0) << text;
    }
}

// A character the style's font lacks comes from the fallback font, scaled to the
// same cap height: the diameter sign of %%c in a Liberation Sans text is DejaVu Sans's.
TEST(TextBoxes, MissingCharactersComeFromTheFallbackFont) {
    const db::TextStyleMetrics style{2.0, 1.0, 0.0, "arial.ttf"};
    const QString diameter = QString::fromUcs4(&db::kDiameterSign, 1);
    const FontExpectation own(QStringLiteral("Liberation Sans"));
    const FontExpectation fallback(kFallbackFamily);
    const db::TextBox box = db::measureText("%%c10", style);
    const double advance = fallback.advance(diameter) + own.advance("10");
    EXPECT_NEAR(box.right, style.height * advance, kTolerance);
    const QRectF sign = fallback.ink(diameter);
    EXPECT_NEAR(box.bottom, style.height * std::min(0.0, sign.top()), kTolerance);
    EXPECT_NEAR(box.top, style.height * std::max({1.0, sign.bottom(), own.ink("10").bottom()}), kTolerance);
}

struct JustifyCase {
    int horizontal;
    int vertical;
    double rotationDegrees;
};

void PrintTo(const JustifyCase& c, std::ostream* out) {
    *out << c.horizontal << "/" << c.vertical << " at " << c.rotationDegrees;
}

class TextJustificationWithFonts : public ::testing::TestWithParam<JustifyCase> {};

// A justified TEXT of a real drawing starts where its font's box puts it: the
// alignment point less the box's centre, right end, middle, bottom or top.
TEST_P(TextJustificationWithFonts, InsertionPointFollowsTheFontsBox) {
    const JustifyCase& c = GetParam();
    TextSpec sample{"Hxgjy", 2.0};
    sample.horizontal = c.horizontal;
    sample.vertical = c.vertical;
    sample.rotationDegrees = c.rotationDegrees;
    DxfParts parts{textEntity("100", "CASE", sample)};
    parts.styles = styleRecord("90", "CASE", "arial.ttf");
    auto database = loadDatabase(modernDxf(parts));
    ASSERT_TRUE(database);
    Opened<KcDbText> text(*database, 0x100, KcDb::kForWrite);
    ASSERT_TRUE(text);
    ASSERT_EQ(text->adjustAlignment(), Kcad::eOk);

    const db::TextBox box = FontExpectation(QStringLiteral("Liberation Sans")).box("Hxgjy", sample.height);
    const double centre = (box.left + box.right) / 2.0;
    const double dx = c.horizontal == 0 ? 0.0 : c.horizontal == 2 ? box.right : centre;
    double dy = 0.0;
    if (c.horizontal == 4 || c.vertical == 2) dy = sample.height / 2.0;
    else if (c.vertical == 1) dy = box.bottom;
    else if (c.vertical == 3) dy = sample.height;
    const double a = c.rotationDegrees * kPi / 180.0;
    const KcGePoint3d position = text->position();
    EXPECT_NEAR(position.x, 10.0 - (dx * std::cos(a) - dy * std::sin(a)), kTolerance);
    EXPECT_NEAR(position.y, 5.0 - (dx * std::sin(a) + dy * std::cos(a)), kTolerance);
    EXPECT_NEAR(text->alignmentPoint().x, 10.0, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Fonts, TextJustificationWithFonts,
                         ::testing::Values(JustifyCase{1, 0, 0}, JustifyCase{2, 0, 0}, JustifyCase{4, 0, 0},
                                           JustifyCase{0, 1, 0}, JustifyCase{1, 1, 0}, JustifyCase{0, 2, 0},
                                           JustifyCase{1, 2, 0}, JustifyCase{2, 2, 0}, JustifyCase{0, 3, 0},
                                           JustifyCase{1, 3, 0}, JustifyCase{2, 3, 0}, JustifyCase{2, 3, 90},
                                           JustifyCase{1, 1, 30}, JustifyCase{4, 0, 200}));

// The extents of a TEXT are its font box around the insertion point.
TEST(TextBoxes, ExtentsOfATextAreItsFontBox) {
    DxfParts parts{textEntity("100", "CASE", {"Hxgjy", 2.0, 1.25})};
    parts.styles = styleRecord("90", "CASE", "times.ttf");
    auto database = loadDatabase(modernDxf(parts));
    ASSERT_TRUE(database);
    Opened<KcDbText> text(*database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(text);
    KcDbExtents extents;
    ASSERT_EQ(text->getGeomExtents(extents), Kcad::eOk);
    const db::TextBox box = FontExpectation(QStringLiteral("Liberation Serif")).box("Hxgjy", 2.0, 1.25);
    EXPECT_NEAR(extents.minPoint().x, box.left, kTolerance);
    EXPECT_NEAR(extents.maxPoint().x, box.right, kTolerance);
    EXPECT_NEAR(extents.minPoint().y, box.bottom, kTolerance);
    EXPECT_NEAR(extents.maxPoint().y, box.top, kTolerance);
}

}  // namespace
}  // namespace korva::test
