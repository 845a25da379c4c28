// The text box estimate and the installable measurer. The estimate counts the
// characters a text shows: %% codes (%%d, %%p, %%c, %%%, %%nnn) are one
// character, %%u and %%o (underline and overline switches) none, a caret pair
// ("^J") and a \U+XXXX or \M+NXXXX escape one, a UTF-8 sequence one.
#include "db/TextMetrics.h"

#include <atomic>
#include <cctype>

namespace korva::db {

namespace {

constexpr double kCharacterWidth = 0.6;  // times the height
constexpr double kDescent = 0.3;         // times the height

std::atomic<TextMeasurer> g_measurer{nullptr};

bool isHexDigits(std::string_view text, size_t from, size_t count) {
    if (from + count > text.size()) return false;
    for (size_t i = from; i < from + count; ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(text[i]))) return false;
    }
    return true;
}

// Bytes of the element at `at` and the characters it shows.
size_t elementAt(std::string_view text, size_t at, size_t& shown) {
    shown = 1;
    const auto byte = static_cast<unsigned char>(text[at]);
    if (text.compare(at, 2, "%%") == 0 && at + 2 < text.size()) {
        const char code = static_cast<char>(std::tolower(static_cast<unsigned char>(text[at + 2])));
        if (code == 'u' || code == 'o') shown = 0;
        if (std::isdigit(static_cast<unsigned char>(code)) && at + 4 < text.size() &&
            std::isdigit(static_cast<unsigned char>(text[at + 3])) && std::isdigit(static_cast<unsigned char>(text[at + 4]))) {
            return 5;  // %%nnn: the character of that number
        }
        return 3;
    }
    if (byte == '^' && at + 1 < text.size()) return 2;
    if (text.compare(at, 3, "\\U+") == 0 && isHexDigits(text, at + 3, 4)) return 7;
    if (text.compare(at, 3, "\\M+") == 0 && isHexDigits(text, at + 3, 5)) return 8;
    if (byte >= 0xF0) return 4;
    if (byte >= 0xE0) return 3;
    if (byte >= 0xC0) return 2;
    return 1;
}

size_t shownCharacters(std::string_view text) {
    size_t count = 0;
    for (size_t at = 0; at < text.size();) {
        size_t shown = 0;
        at += elementAt(text, at, shown);
        count += shown;
    }
    return count;
}

}  // namespace

void installTextMeasurer(TextMeasurer measurer) { g_measurer.store(measurer); }

TextBox measureText(std::string_view text, const TextStyleMetrics& style) {
    if (TextMeasurer measurer = g_measurer.load()) return measurer(text, style);
    return estimateTextBox(text, style);
}

TextBox estimateTextBox(std::string_view text, const TextStyleMetrics& style) {
    const size_t characters = shownCharacters(text);
    if (characters == 0) return {};
    TextBox box;
    box.right = static_cast<double>(characters) * kCharacterWidth * style.height * style.widthFactor;
    box.bottom = -kDescent * style.height;
    box.top = style.height;
    return box;
}

}  // namespace korva::db
