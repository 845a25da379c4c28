// Measuring texts with fonts, and installing the measurer.
#include "fonts/FontMetrics.h"

#include "fonts/FontCatalog.h"
#include "fonts/GlyphLayout.h"

namespace korva::fonts {

bool installFontMetrics() {
    const bool loaded = FontCatalog::instance().fallbackFont() != nullptr;
    db::installTextMeasurer(&measureTextWithFonts);
    return loaded;
}

db::TextBox measureTextWithFonts(std::string_view text, const db::TextStyleMetrics& style) {
    if (text.empty()) return {};
    const std::shared_ptr<const FontFace> face = FontCatalog::instance().fontFor(style);
    if (!face) return db::estimateTextBox(text, style);
    const std::optional<GlyphLayout> layout = layoutGlyphs(text, *face);
    if (!layout) return db::estimateTextBox(text, style);
    return textBoxOf(*layout, style);
}

}  // namespace korva::fonts
