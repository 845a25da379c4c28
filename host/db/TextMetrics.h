// The text box of a single-line text: how far its glyphs reach from the
// insertion point, in the text's own coordinates (x along the baseline, before
// rotation). The database measures texts through a measurer the host installs
// (host/fonts measures with real fonts); until one is installed, and wherever
// no font can be loaded, it uses an estimate from the text's height and length
// (characters 0.6 times the height wide, descenders 0.3 times the height deep),
// good enough for extents and justification, not for layout.
#pragma once

#include <cstdint>
#include <string_view>

namespace korva::db {

class ObjectRecord;

struct TextStyleMetrics {
    double height = 2.5;              // the height of capital letters
    double widthFactor = 1.0;
    double oblique = 0.0;             // radians
    std::string_view fontFile = {};   // the style's primary font file (group 3)
    std::string_view bigFontFile = {};
    std::string_view fontFamily = {};  // TrueType family from the style's extended data ("ACAD" 1000)
    bool bold = false;                 // from the flags of that extended data (1071)
    bool italic = false;
};

struct TextBox {
    double left = 0.0;    // from the insertion point along the baseline
    double right = 0.0;
    double bottom = 0.0;  // below the baseline: negative
    double top = 0.0;
};

// Measures a text as stored (UTF-8, with %% codes and carets). Empty texts have an empty box.
using TextMeasurer = TextBox (*)(std::string_view text, const TextStyleMetrics& style);

// Installs a measurer (null: the estimate) and returns the one it replaces.
TextMeasurer installTextMeasurer(TextMeasurer measurer);
// The measurer installed now (null: the estimate).
TextMeasurer installedTextMeasurer();
TextBox measureText(std::string_view text, const TextStyleMetrics& style);
// A text's box as it shows with its generation flags (group 71): 2 mirrors it in
// x about the insertion point (backward), 4 in y (upside down).
TextBox orientedTextBox(const TextBox& box, int64_t generationFlags);
// The estimate used until a measurer is installed.
TextBox estimateTextBox(std::string_view text, const TextStyleMetrics& style);

// The style metrics of a TEXT, ATTRIB, ATTDEF or MTEXT record: its own height,
// width factor and oblique angle (MTEXT: 1 and 0) and the fonts of its text
// style. The views point into the records' tags: use them before changing the
// records.
TextStyleMetrics textStyleOf(const ObjectRecord& text);
// The fonts of a STYLE record: files (3, 4) and the family and bold/italic flags
// of its "ACAD" extended data.
void readStyleFonts(const ObjectRecord& style, TextStyleMetrics& metrics);

}  // namespace korva::db
