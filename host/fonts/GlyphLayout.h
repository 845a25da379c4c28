// GlyphLayout: a single-line text set in a font, in the font's cap-height
// units (before the text's height, width factor and oblique apply): each shown
// character's glyph at its pen position (advances summed from 0, no kerning, as
// CAD text sets them) and the bars of the %%u, %%o and %%k switches (underline,
// overline, strike-through) over the spans they cover. The measurer and the
// outline builder share it, so the box always contains the outline.
#pragma once

#include <QTransform>

#include <optional>
#include <string_view>
#include <vector>

#include "db/TextMetrics.h"
#include "fonts/FontFace.h"

namespace korva::fonts {

struct PlacedGlyph {
    const Glyph* glyph = nullptr;
    double x = 0.0;  // pen position
};

// A horizontal bar from `from` to `to` around the height `centre`.
struct DecorationBar {
    double from = 0.0;
    double to = 0.0;
    double centre = 0.0;
    double thickness = 0.0;
};

struct GlyphLayout {
    std::vector<PlacedGlyph> glyphs;
    std::vector<DecorationBar> bars;
    double advance = 0.0;  // the sum of the advances
};

// Sets a stored text (%% codes, carets, escapes) in a font; nullopt when a glyph
// is not cached and Qt cannot be used from this thread.
std::optional<GlyphLayout> layoutGlyphs(std::string_view text, const FontFace& face);

// From cap-height units to text coordinates: scaled by the height, x by the
// width factor too, then slanted by the oblique angle (x += y tan(oblique)).
QTransform textTransform(const db::TextStyleMetrics& style);

// The text box: x from 0 to the advance sum and y from the baseline to the cap
// height, widened to the ink of glyphs and bars that reach further (descenders,
// overhangs), then transformed; with an oblique angle, the box of the slanted
// box. Empty when nothing shows.
db::TextBox textBoxOf(const GlyphLayout& layout, const db::TextStyleMetrics& style);

}  // namespace korva::fonts
