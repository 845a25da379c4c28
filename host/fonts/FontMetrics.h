// The host's text measurer: text boxes from real fonts (FontCatalog.h chooses
// the font of a style, GlyphLayout.h sets the glyphs). CAD text height is the
// height of capital letters, so each font is scaled until its cap height equals
// the text height. Installed into the database at start-up, after the
// GuiApplication exists:
//
//     korva::fonts::GuiApplication application;
//     korva::fonts::installFontMetrics();
//
// The measurer may run on any thread (FontFace.h); where no font can be used
// (no application, and the style or a glyph not cached yet) it gives the
// database's estimate.
#pragma once

#include <string_view>

#include "db/TextMetrics.h"

namespace korva::fonts {

// Resolves the fallback font on the calling thread and installs the measurer;
// false when no font could be loaded (texts are then estimated).
bool installFontMetrics();

// The text box of a stored text in a style, from its font.
db::TextBox measureTextWithFonts(std::string_view text, const db::TextStyleMetrics& style);

}  // namespace korva::fonts
