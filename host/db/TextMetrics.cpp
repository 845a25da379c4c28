// The text box estimate, the installable measurer and the style metrics of a
// text record. The estimate counts the characters a text shows (TextCodes.h):
// a %% code or a caret pair is one character, the switches %%u, %%o and %%k none.
#include "db/TextMetrics.h"

#include <atomic>

#include "db/Drawing.h"
#include "db/RecordFields.h"
#include "db/TextCodes.h"

namespace korva::db {

namespace {

constexpr double kCharacterWidth = 0.6;  // times the height
constexpr double kDescent = 0.3;         // times the height
constexpr double kDegree = 3.14159265358979323846 / 180.0;

// Flags of the style's "ACAD" extended data (group 1071) beside the font's pitch and family bits.
constexpr int64_t kItalicFlag = 0x1000000;
constexpr int64_t kBoldFlag = 0x2000000;

std::atomic<TextMeasurer> g_measurer{nullptr};

}  // namespace

TextMeasurer installTextMeasurer(TextMeasurer measurer) { return g_measurer.exchange(measurer); }

TextMeasurer installedTextMeasurer() { return g_measurer.load(); }

TextBox measureText(std::string_view text, const TextStyleMetrics& style) {
    if (TextMeasurer measurer = g_measurer.load()) return measurer(text, style);
    return estimateTextBox(text, style);
}

TextBox orientedTextBox(const TextBox& box, int64_t generationFlags) {
    TextBox shown = box;
    if (generationFlags & 2) {
        shown.left = -box.right;
        shown.right = -box.left;
    }
    if (generationFlags & 4) {
        shown.bottom = -box.top;
        shown.top = -box.bottom;
    }
    return shown;
}

TextBox estimateTextBox(std::string_view text, const TextStyleMetrics& style) {
    const size_t characters = shownCharacterCount(text);
    if (characters == 0) return {};
    TextBox box;
    box.right = static_cast<double>(characters) * kCharacterWidth * style.height * style.widthFactor;
    box.bottom = -kDescent * style.height;
    box.top = style.height;
    return box;
}

void readStyleFonts(const ObjectRecord& style, TextStyleMetrics& metrics) {
    metrics.fontFile = fieldText(style, {}, 3);
    metrics.bigFontFile = fieldText(style, {}, 4);
    bool inFontData = false;  // inside the "ACAD" application's extended data
    bool familySeen = false;
    for (TagRef tag : style.tags) {
        if (tag.code() == 1001) {
            if (inFontData) break;
            inFontData = tag.text() == "ACAD";
            continue;
        }
        if (!inFontData) continue;
        if (tag.code() == 1000 && !familySeen) {
            metrics.fontFamily = tag.text();
            familySeen = true;
        } else if (tag.code() == 1071 && familySeen) {
            const int64_t flags = tag.integer();
            metrics.bold = (flags & kBoldFlag) != 0;
            metrics.italic = (flags & kItalicFlag) != 0;
            break;
        }
    }
}

TextStyleMetrics textStyleOf(const ObjectRecord& text) {
    const bool isMText = text.type == Type::MText;
    const std::string_view marker = isMText ? "AcDbMText" : "AcDbText";
    TextStyleMetrics metrics;
    metrics.height = fieldReal(text, marker, 40, 2.5);
    if (!isMText) {
        metrics.widthFactor = fieldReal(text, marker, 41, 1.0);
        metrics.oblique = fieldReal(text, marker, 51, 0.0) * kDegree;
    }
    if (text.drawing) {
        if (const ObjectRecord* style = text.drawing->tableRecord("STYLE", fieldText(text, marker, 7, "Standard"))) {
            readStyleFonts(*style, metrics);
        }
    }
    return metrics;
}

}  // namespace korva::db
