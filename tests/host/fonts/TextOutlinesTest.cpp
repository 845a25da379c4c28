// Text outlines: they lie within the measured box and reach its ink edges,
// fill with the winding rule (holes stay open, bars unite with glyphs),
// flatten within the tolerance, and MTEXT outlines follow the layout. Also:
// measuring and outlining from a thread that is not the GUI thread.
#include <gtest/gtest.h>

#include <QRawFont>

#include <cmath>
#include <thread>

#include "FontTestSupport.h"
#include "db/geometry/MTextLayout.h"
#include "fonts/FontMetrics.h"
#include "fonts/TextOutlines.h"

namespace korva::test {
namespace {

constexpr double kPi = 3.14159265358979323846;

struct OutlineCase {
    const char* text;
    db::TextStyleMetrics style;
    bool inkReachesBottom;  // the lowest ink is the box's bottom (descenders, underline)
};

void PrintTo(const OutlineCase& c, std::ostream* out) {
    *out << c.text << " in " << c.style.fontFile << " h " << c.style.height << " w " << c.style.widthFactor;
}

class TextOutlines : public ::testing::TestWithParam<OutlineCase> {};

// The outline and its contours lie within the text box, touching it where ink sets the box.
TEST_P(TextOutlines, LieWithinTheTextBox) {
    const OutlineCase& c = GetParam();
    const db::TextBox box = db::measureText(c.text, c.style);
    const QPainterPath path = fonts::textPath(c.text, c.style);
    ASSERT_FALSE(path.isEmpty());
    const QRectF bounds = path.boundingRect();
    const double slack = 1e-9 * c.style.height;
    EXPECT_GE(bounds.left(), box.left - slack);
    EXPECT_LE(bounds.right(), box.right + slack);
    EXPECT_GE(bounds.top(), box.bottom - slack);  // QRectF's top is its smallest y
    EXPECT_LE(bounds.bottom(), box.top + slack);
    if (c.inkReachesBottom) {
        EXPECT_NEAR(bounds.top(), box.bottom, 1e-6 * c.style.height);
    }

    const double tolerance = 1e-3 * c.style.height;
    const auto contours = fonts::textContours(c.text, c.style, tolerance);
    ASSERT_FALSE(contours.empty());
    for (const fonts::Contour& contour : contours) {
        ASSERT_GE(contour.size(), 3u);
        EXPECT_NE(contour.front(), contour.back()) << "closed contours do not repeat their first point";
        for (const auto& point : contour) {
            EXPECT_GE(point[0], box.left - tolerance);
            EXPECT_LE(point[0], box.right + tolerance);
            EXPECT_GE(point[1], box.bottom - tolerance);
            EXPECT_LE(point[1], box.top + tolerance);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, TextOutlines,
    ::testing::Values(OutlineCase{"Hxgjy", {2.5, 1.0, 0.0, "arial.ttf"}, true},
                      OutlineCase{"Hxgjy", {2.5, 0.6, 0.0, "times.ttf"}, true},
                      OutlineCase{"Slanted gy", {3.0, 1.0, 20.0 * kPi / 180.0, "arial.ttf"}, false},
                      OutlineCase{"Back slant", {1.0, 1.8, -15.0 * kPi / 180.0, "cour.ttf"}, false},
                      OutlineCase{"%%uUnder%%u", {2.0, 1.0, 0.0, "arial.ttf"}, true},
                      OutlineCase{"%%oOver %%kstruck", {2.0, 1.0, 0.0, "txt"}, false},
                      OutlineCase{"%%c25 %%d %%p", {1.0, 1.0, 0.0, "arial.ttf"}, false}));

// Holes of glyphs stay open under the winding rule, and an underline crossing a
// glyph fills where they overlap (bars turn the way the glyphs do).
TEST(TextOutlines, WindingRuleKeepsHolesAndUnitesBars) {
    const db::TextStyleMetrics style{10.0, 1.0, 0.0, "arial.ttf"};
    const QPainterPath letter = fonts::textPath("O", style);
    EXPECT_EQ(letter.fillRule(), Qt::WindingFill);
    const QRectF o = letter.boundingRect();
    EXPECT_FALSE(letter.contains(o.center())) << "the hole of the O";
    EXPECT_TRUE(letter.contains(QPointF(o.left() + 0.02 * o.width(), o.center().y()))) << "the ring of the O";

    // "|" reaches below the baseline through the underline.
    const FontExpectation font(QStringLiteral("Liberation Sans"));
    const QRectF bar = font.ink("|");
    ASSERT_LT(bar.top(), font.underlineCentre()) << "the bar must cross the underline for this check";
    const QPointF crossing(bar.center().x() * style.height, font.underlineCentre() * style.height);
    ASSERT_TRUE(fonts::textPath("|", style).contains(crossing)) << "the point lies in the glyph itself";
    EXPECT_TRUE(fonts::textPath("%%u|", style).contains(crossing)) << "where glyph and underline overlap, it fills";
}

// Flattened contours follow the curves within the tolerance: a coarse contour's
// chords stay that close to a much finer flattening of the same outline.
TEST(TextOutlines, FlatteningHonoursTheTolerance) {
    const db::TextStyleMetrics style{10.0, 1.0, 0.0, "times.ttf"};
    const auto fine = fonts::textContours("O", style, 1e-5);
    for (const double tolerance : {0.2, 0.05, 0.01}) {
        const auto coarse = fonts::textContours("O", style, tolerance);
        size_t coarsePoints = 0, finePoints = 0;
        for (const auto& c : coarse) coarsePoints += c.size();
        for (const auto& c : fine) finePoints += c.size();
        EXPECT_LT(coarsePoints, finePoints);
        for (const auto& contour : coarse) {
            for (size_t i = 0; i < contour.size(); ++i) {
                const auto& a = contour[i];
                const auto& b = contour[(i + 1) % contour.size()];
                const QPointF middle((a[0] + b[0]) / 2.0, (a[1] + b[1]) / 2.0);
                double nearest = 1e9;
                for (const auto& f : fine) {
                    for (const auto& p : f) nearest = std::min(nearest, std::hypot(p[0] - middle.x(), p[1] - middle.y()));
                }
                EXPECT_LE(nearest, tolerance + 0.01) << "tolerance " << tolerance;
            }
        }
    }
}

// An MTEXT's outline is its runs' outlines where the layout puts them: within
// the runs' text boxes at their baseline origins. (Ascenders and descenders may
// pass the MTEXT's own box, which counts cap heights.)
TEST(TextOutlines, MTextOutlineFollowsItsLayout) {
    auto database = loadDatabase(modernDxf({mtextEntity("100", "First line\\P{\\H2x;Tall} words gj", 1.0, 0.0, 5)}));
    ASSERT_TRUE(database);
    const db::ObjectRecord& record = recordOf(*database, 0x100);
    const db::geometry::MTextLayout layout = db::geometry::layoutMText(record);
    db::TextStyleMetrics style = db::textStyleOf(record);
    QRectF runs;
    for (const auto& line : layout.lines) {
        for (const auto& run : line.runs) {
            style.height = run.height;
            const db::TextBox box = db::measureText(run.text, style);
            const double x = line.x + run.x;
            runs |= QRectF(QPointF(x + box.left, line.y + box.bottom), QPointF(x + box.right, line.y + box.top));
        }
    }
    const QRectF bounds = fonts::mtextPath(record).boundingRect();
    ASSERT_FALSE(bounds.isEmpty());
    EXPECT_GE(bounds.left(), runs.left() - 1e-9);
    EXPECT_LE(bounds.right(), runs.right() + 1e-9);
    EXPECT_GE(bounds.top(), runs.top() - 1e-9);
    EXPECT_LE(bounds.bottom(), runs.bottom() + 1e-9);
    EXPECT_NEAR(bounds.top(), runs.top(), 1e-6) << "the descenders of the last line";
    EXPECT_LT(bounds.top(), layout.top - layout.height) << "they hang below the last baseline";
}

// A thread that is not the GUI thread measures and outlines with the fonts, even
// a style and glyphs no thread has used before.
TEST(TextMeasuringThreads, WorkerThreadMeasuresWithRealFonts) {
    const db::TextStyleMetrics style{3.0, 1.2, 0.1, "LiberationMono-BoldItalic.ttf"};
    const char* text = "Thread \xD0\x96\xD0\xB8";  // with Cyrillic letters
    db::TextBox measured;
    QRectF outline;
    std::thread worker([&] {
        measured = db::measureText(text, style);
        outline = fonts::textPath(text, style).boundingRect();
    });
    worker.join();
    const FontExpectation font(QStringLiteral("Liberation Mono"), true, true);
    EXPECT_TRUE(boxesNear(measured, font.box(QString::fromUtf8(text), 3.0, 1.2, 0.1), 1e-6 * style.height));
    EXPECT_FALSE(outline.isEmpty());
    EXPECT_LE(outline.right(), measured.right + 1e-9);
    EXPECT_TRUE(boxesNear(db::measureText(text, style), measured, 1e-12)) << "the main thread measures the same";
}

}  // namespace
}  // namespace korva::test
