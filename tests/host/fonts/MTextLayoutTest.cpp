// MTEXT measured with fonts: greedy wrapping at spaces within the reference
// width, the height codes, the line spacing factor, and the lines' placement
// as extents and explode see it. The MTEXTs are in the template's Standard
// style (an SHX font, so DejaVu Sans); expectations come from that font.
#include <gtest/gtest.h>

#include <QStringList>

#include <cmath>

#include "FontTestSupport.h"
#include "db/geometry/MTextLayout.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

// Font units are exact at the em size the fonts are read at: boxes agree to rounding.
constexpr double kTolerance = 1e-6;
constexpr double kPitch = 5.0 / 3.0;

const FontExpectation& standardFont() {
    static const FontExpectation font(kFallbackFamily);
    return font;
}

// The right end of a line's box at a height: how wide the database measures it.
double lineWidth(const QString& text, double height) { return standardFont().box(text, height).right; }

// Greedy wrapping written out here: a word goes on the line while the line stays within the width.
QStringList wrapped(const QString& paragraph, double height, double width) {
    QStringList lines;
    QString line;
    for (const QString& word : paragraph.split(' ', Qt::SkipEmptyParts)) {
        const QString longer = line.isEmpty() ? word : line + ' ' + word;
        if (width > 0.0 && !line.isEmpty() && lineWidth(longer, height) > width) {
            lines << line;
            line = word;
        } else {
            line = longer;
        }
    }
    lines << line;
    return lines;
}

struct LoadedMText {
    std::unique_ptr<KcDbDatabase> database;
    db::ObjectRecord* record = nullptr;
};

LoadedMText loadMText(std::string_view contents, double height, double width, int attachment = 1,
                      double spacing = 1.0) {
    LoadedMText loaded;
    loaded.database = loadDatabase(modernDxf({mtextEntity("100", contents, height, width, attachment, spacing)}));
    if (loaded.database) loaded.record = &recordOf(*loaded.database, 0x100);
    return loaded;
}

struct WrapCase {
    const char* contents;
    double height;
    double referenceWidth;  // 0: no wrapping
    double spacing;
};

void PrintTo(const WrapCase& c, std::ostream* out) { *out << c.contents << " in " << c.referenceWidth; }

class MTextWrapping : public ::testing::TestWithParam<WrapCase> {};

// Lines break at spaces where the next word would pass the reference width; the
// actual width is the widest line and the height counts the lines at the pitch.
TEST_P(MTextWrapping, LinesActualWidthAndHeightFollowTheFont) {
    const WrapCase& c = GetParam();
    const LoadedMText mtext = loadMText(c.contents, c.height, c.referenceWidth, 1, c.spacing);
    ASSERT_TRUE(mtext.record);

    QStringList expectedLines;
    for (const QString& paragraph : QString::fromUtf8(c.contents).split("\\P")) {
        expectedLines << wrapped(paragraph, c.height, c.referenceWidth);
    }
    const db::geometry::MTextLayout layout = db::geometry::layoutMText(*mtext.record);
    ASSERT_EQ(layout.lines.size(), static_cast<size_t>(expectedLines.size()));
    double widest = 0.0;
    for (int i = 0; i < expectedLines.size(); ++i) {
        const auto& line = layout.lines[static_cast<size_t>(i)];
        ASSERT_EQ(line.runs.size(), 1u) << i;
        EXPECT_EQ(QString::fromStdString(line.runs[0].text), expectedLines[i]);
        widest = std::max(widest, lineWidth(expectedLines[i], c.height));
    }
    Opened<KcDbMText> entity(*mtext.database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(entity);
    EXPECT_NEAR(entity->actualWidth(), widest, kTolerance);
    const double lines = static_cast<double>(expectedLines.size());
    EXPECT_NEAR(entity->actualHeight(), c.height * (1.0 + (lines - 1.0) * kPitch * c.spacing), 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Fonts, MTextWrapping,
                         ::testing::Values(WrapCase{"alpha beta gamma delta epsilon", 1.0, 0.0, 1.0},
                                           WrapCase{"alpha beta gamma delta epsilon", 1.0, 12.0, 1.0},
                                           WrapCase{"alpha beta gamma delta epsilon", 1.0, 7.0, 1.0},
                                           WrapCase{"alpha beta gamma delta epsilon", 2.5, 7.0, 1.0},
                                           WrapCase{"alpha beta gamma delta epsilon", 1.0, 0.5, 1.5},
                                           WrapCase{"one\\Ptwo\\Pthree", 2.0, 0.0, 1.0},
                                           WrapCase{"one\\Ptwo\\Pthree", 2.0, 0.0, 0.75},
                                           WrapCase{"first paragraph here\\Psecond one", 1.0, 8.0, 2.0}));

struct HeightRun {
    const char* text;
    double height;  // in text heights
};

struct HeightCase {
    const char* contents;
    std::vector<std::vector<HeightRun>> lines;
};

void PrintTo(const HeightCase& c, std::ostream* out) { *out << c.contents; }

class MTextHeightCodes : public ::testing::TestWithParam<HeightCase> {};

// \H sets (or with x scales) the height of what follows up to the end of its
// group; other codes are removed. Runs sit side by side, lines take their tallest run.
TEST_P(MTextHeightCodes, RunsTakeTheirHeights) {
    const HeightCase& c = GetParam();
    const double height = 2.0;
    const LoadedMText mtext = loadMText(c.contents, height, 0.0);
    ASSERT_TRUE(mtext.record);
    const db::geometry::MTextLayout layout = db::geometry::layoutMText(*mtext.record);
    ASSERT_EQ(layout.lines.size(), c.lines.size());
    double expectedHeight = 0.0, widest = 0.0;
    for (size_t i = 0; i < c.lines.size(); ++i) {
        const auto& line = layout.lines[i];
        ASSERT_EQ(line.runs.size(), c.lines[i].size()) << "line " << i;
        double x = 0.0, tallest = 0.0;
        for (size_t r = 0; r < c.lines[i].size(); ++r) {
            const HeightRun& run = c.lines[i][r];
            EXPECT_EQ(line.runs[r].text, run.text);
            EXPECT_NEAR(line.runs[r].height, run.height * height, 1e-12);
            EXPECT_NEAR(line.runs[r].x, x, kTolerance);
            x += lineWidth(QString::fromUtf8(run.text), run.height * height);
            tallest = std::max(tallest, run.height * height);
        }
        widest = std::max(widest, x);
        expectedHeight += i == 0 ? tallest : kPitch * tallest;
    }
    Opened<KcDbMText> entity(*mtext.database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(entity);
    EXPECT_NEAR(entity->actualWidth(), widest, kTolerance);
    EXPECT_NEAR(entity->actualHeight(), expectedHeight, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, MTextHeightCodes,
    ::testing::Values(HeightCase{"A{\\H2x;B}C", {{{"A", 1}, {"B", 2}, {"C", 1}}}},
                      HeightCase{"\\H3;Big", {{{"Big", 1.5}}}},
                      HeightCase{"{\\H0.5x;small}\\Pnext", {{{"small", 0.5}}, {{"next", 1}}}},
                      HeightCase{"{\\H2x;A\\Ptall}\\Plow", {{{"A", 2}}, {{"tall", 2}}, {{"low", 1}}}},
                      HeightCase{"{\\fArial|b1;Bold} \\C1;red\\~x", {{{"Bold red\xC2\xA0x", 1}}}},
                      HeightCase{"x{\\H-1;y}{\\Hbad;z}", {{{"xyz", 1}}}}));

// The box is placed by the attachment point and every line aligned in it: extents
// and explode put the lines where the layout does.
TEST(MTextPlacement, MiddleCentreLinesAreCentredAndStacked) {
    const double h = 1.5;
    const LoadedMText mtext = loadMText("Wide first line\\Pnext", h, 0.0, 5);
    ASSERT_TRUE(mtext.record);
    const double first = lineWidth("Wide first line", h), second = lineWidth("next", h);
    const double height = h * (1.0 + kPitch);

    const db::geometry::MTextLayout layout = db::geometry::layoutMText(*mtext.record);
    ASSERT_EQ(layout.lines.size(), 2u);
    EXPECT_NEAR(layout.lines[0].x, -first / 2.0, kTolerance);
    EXPECT_NEAR(layout.lines[1].x, -second / 2.0, kTolerance);
    EXPECT_NEAR(layout.lines[0].y, height / 2.0 - h, 1e-9);
    EXPECT_NEAR(layout.lines[1].y, height / 2.0 - h - kPitch * h, 1e-9);

    Opened<KcDbMText> entity(*mtext.database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(entity);
    KcDbExtents extents;
    ASSERT_EQ(entity->getGeomExtents(extents), Kcad::eOk);
    EXPECT_NEAR(extents.minPoint().x, -first / 2.0, kTolerance);
    EXPECT_NEAR(extents.maxPoint().x, first / 2.0, kTolerance);
    EXPECT_NEAR(extents.minPoint().y, -height / 2.0, 1e-9);
    EXPECT_NEAR(extents.maxPoint().y, height / 2.0, 1e-9);

    KcDbVoidPtrArray parts;
    ASSERT_EQ(entity->explode(parts), Kcad::eOk);
    ASSERT_EQ(parts.length(), 2);
    for (int i = 0; i < parts.length(); ++i) {
        std::unique_ptr<KcDbText> part(static_cast<KcDbText*>(parts[i]));
        const auto& line = layout.lines[static_cast<size_t>(i)];
        EXPECT_NEAR(part->position().x, line.x, kTolerance) << i;
        EXPECT_NEAR(part->position().y, line.y, 1e-9) << i;
        EXPECT_NEAR(part->alignmentPoint().x, 0.0, kTolerance) << "centred on the location";
        EXPECT_EQ(part->horizontalMode(), KcDb::kTextCenter);
    }
}

}  // namespace
}  // namespace korva::test
