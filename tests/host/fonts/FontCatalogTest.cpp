// The font catalog: which installed font a text style of a real drawing uses
// (font files by name, families through the font database and fontconfig's
// metric-compatible families, SHX and unknown fonts to the fallback), checked
// both by the font chosen and by the text box measured with it.
#include <gtest/gtest.h>

#include <filesystem>

#include "FontTestSupport.h"
#include "fonts/FontCatalog.h"

namespace korva::test {
namespace {

struct ResolutionCase {
    const char* fontFile;
    const char* family;  // extended data; empty: none
    int64_t flags;
    const char* expectedFamily;
    bool bold;
    bool italic;
};

void PrintTo(const ResolutionCase& c, std::ostream* out) {
    *out << "'" << c.fontFile << "' '" << c.family << "' " << c.flags;
}

class FontResolution : public ::testing::TestWithParam<ResolutionCase> {};

// Each style resolves to the documented font, and texts in it measure with that font's metrics.
TEST_P(FontResolution, StyleUsesTheExpectedFont) {
    const ResolutionCase& c = GetParam();
    DxfParts parts{textEntity("100", "CASE", {"Hxgjy 42", 2.0})};
    parts.styles = styleRecord("90", "CASE", c.fontFile, c.family, c.flags);
    auto database = loadDatabase(modernDxf(parts));
    ASSERT_TRUE(database);
    const db::TextStyleMetrics style = db::textStyleOf(recordOf(*database, 0x100));

    const auto face = fonts::FontCatalog::instance().fontFor(style);
    ASSERT_TRUE(face);
    EXPECT_EQ(face->familyName().toStdString(), c.expectedFamily);
    EXPECT_EQ(face->styleName().contains("Bold"), c.bold) << face->styleName().toStdString();
    const bool slanted = face->styleName().contains("Italic") || face->styleName().contains("Oblique");
    EXPECT_EQ(slanted, c.italic) << face->styleName().toStdString();

    const FontExpectation expected(QString::fromLatin1(c.expectedFamily), c.bold, c.italic);
    EXPECT_TRUE(boxesNear(db::measureText("Hxgjy 42", style), expected.box("Hxgjy 42", 2.0), 1e-6));
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, FontResolution,
    ::testing::Values(
        // Common TrueType files stand for families that fontconfig maps to metric-compatible ones.
        ResolutionCase{"arial.ttf", "", 0, "Liberation Sans", false, false},
        ResolutionCase{"ARIAL.TTF", "", 0, "Liberation Sans", false, false},
        ResolutionCase{"arialbd.ttf", "", 0, "Liberation Sans", true, false},
        ResolutionCase{"C:\\Windows\\Fonts\\timesi.ttf", "", 0, "Liberation Serif", false, true},
        ResolutionCase{"cour.ttf", "", 0, "Liberation Mono", false, false},
        // Installed files are used by name, whatever the case.
        ResolutionCase{"DejaVuSerif.ttf", "", 0, "DejaVu Serif", false, false},
        ResolutionCase{"liberationsans-bolditalic.ttf", "", 0, "Liberation Sans", true, true},
        // The family and flags of the extended data.
        ResolutionCase{"", "Times New Roman", kRegularFlags, "Liberation Serif", false, false},
        ResolutionCase{"", "Arial", kBoldFlags, "Liberation Sans", true, false},
        ResolutionCase{"", "Arial", kItalicFlags, "Liberation Sans", false, true},
        ResolutionCase{"missing-file.ttf", "Courier New", kBoldItalicFlags, "Liberation Mono", true, true},
        // SHX fonts, unknown fonts and no font at all: the fallback.
        ResolutionCase{"txt", "", 0, "DejaVu Sans", false, false},
        ResolutionCase{"simplex.shx", "", 0, "DejaVu Sans", false, false},
        ResolutionCase{"ROMANS.SHX", "", 0, "DejaVu Sans", false, false},
        ResolutionCase{"missing-file.ttf", "", 0, "DejaVu Sans", false, false},
        ResolutionCase{"", "No Such Family", kBoldFlags, "DejaVu Sans", false, false},
        ResolutionCase{"", "", 0, "DejaVu Sans", false, false}));

// The fallback is DejaVu Sans from its own file, and font files are found without regard to case.
TEST(FontCatalog, FallbackIsDejaVuSansFromItsFile) {
    auto& catalog = fonts::FontCatalog::instance();
    const auto fallback = catalog.fallbackFont();
    ASSERT_TRUE(fallback);
    EXPECT_EQ(fallback->familyName().toStdString(), "DejaVu Sans");
    EXPECT_EQ(std::filesystem::path(fallback->source().file.toStdString()).filename(), "DejaVuSans.ttf");
    const auto found = catalog.findFontFile("dejavusans.TTF");
    ASSERT_TRUE(found);
    EXPECT_TRUE(std::filesystem::exists(*found));
    EXPECT_FALSE(catalog.findFontFile("no-such-font.ttf"));
}

// A style is resolved once: the same style gives the same font object.
TEST(FontCatalog, ResolvedFontsAreCached) {
    const db::TextStyleMetrics style{1.0, 1.0, 0.0, "times.ttf"};
    auto& catalog = fonts::FontCatalog::instance();
    EXPECT_EQ(catalog.fontFor(style), catalog.fontFor(style));
    const db::TextStyleMetrics sameFile{5.0, 2.0, 0.3, "TIMES.TTF"};
    EXPECT_EQ(catalog.fontFor(style), catalog.fontFor(sameFile)) << "the key ignores case and the text's own sizes";
}

}  // namespace
}  // namespace korva::test
