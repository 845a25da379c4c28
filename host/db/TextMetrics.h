// The text box of a single-line text: how far its glyphs reach from the
// insertion point, in the text's own coordinates (x along the baseline, before
// rotation). The database measures texts through a measurer the host installs;
// until one is installed it uses an estimate from the text's height and length
// (characters 0.6 times the height wide, descenders 0.3 times the height deep),
// good enough for extents and justification, not for layout.
#pragma once

#include <string_view>

namespace korva::db {

struct TextStyleMetrics {
    double height = 2.5;
    double widthFactor = 1.0;
    double oblique = 0.0;             // radians
    std::string_view fontFile = {};   // the style's primary font file (group 3)
    std::string_view bigFontFile = {};
};

struct TextBox {
    double left = 0.0;    // from the insertion point along the baseline
    double right = 0.0;
    double bottom = 0.0;  // below the baseline: negative
    double top = 0.0;
};

// Measures a text as stored (UTF-8, with %% codes and carets). Empty texts have an empty box.
using TextMeasurer = TextBox (*)(std::string_view text, const TextStyleMetrics& style);

void installTextMeasurer(TextMeasurer measurer);
TextBox measureText(std::string_view text, const TextStyleMetrics& style);
// The estimate used until a measurer is installed.
TextBox estimateTextBox(std::string_view text, const TextStyleMetrics& style);

}  // namespace korva::db
