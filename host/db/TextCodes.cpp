// Decoding the codes of a stored single-line text into the characters it shows.
#include "db/TextCodes.h"

#include <cctype>

namespace korva::db {

namespace {

bool isDigitAt(std::string_view text, size_t at) {
    return at < text.size() && std::isdigit(static_cast<unsigned char>(text[at]));
}

bool isHexDigits(std::string_view text, size_t from, size_t count) {
    if (from + count > text.size()) return false;
    for (size_t i = from; i < from + count; ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(text[i]))) return false;
    }
    return true;
}

char32_t hexValue(std::string_view digits) {
    char32_t value = 0;
    for (const char c : digits) {
        const int digit = std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : std::tolower(c) - 'a' + 10;
        value = value * 16 + static_cast<char32_t>(digit);
    }
    return value;
}

// One UTF-8 sequence; an invalid lead or continuation byte reads as Latin-1.
char32_t decodeUtf8(std::string_view text, size_t at, size_t& length) {
    const auto lead = static_cast<unsigned char>(text[at]);
    size_t count = 0;  // continuation bytes
    if (lead >= 0xF0 && lead < 0xF8) {
        count = 3;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        count = 2;
    } else if (lead >= 0xC2 && lead < 0xE0) {
        count = 1;
    }
    char32_t value = lead & (0x3F >> count);
    if (lead < 0x80 || count == 0 || at + count >= text.size()) {
        length = 1;
        return lead;
    }
    for (size_t i = 1; i <= count; ++i) {
        const auto next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xC0) != 0x80) {
            length = 1;
            return lead;
        }
        value = (value << 6) | (next & 0x3F);
    }
    length = count + 1;
    return value;
}

// A "%%" code at `at` (the text has at least one byte after the two percent signs).
size_t percentCode(std::string_view text, size_t at, TextElement& element) {
    const char code = static_cast<char>(std::tolower(static_cast<unsigned char>(text[at + 2])));
    switch (code) {
        case 'u': element.kind = TextElement::Kind::Underline; return 3;
        case 'o': element.kind = TextElement::Kind::Overline; return 3;
        case 'k': element.kind = TextElement::Kind::StrikeThrough; return 3;
        case 'd': element.character = kDegreeSign; return 3;
        case 'p': element.character = kPlusMinusSign; return 3;
        case 'c': element.character = kDiameterSign; return 3;
        default: break;
    }
    if (isDigitAt(text, at + 2) && isDigitAt(text, at + 3) && isDigitAt(text, at + 4)) {
        element.character = static_cast<char32_t>((text[at + 2] - '0') * 100 + (text[at + 3] - '0') * 10 +
                                                  (text[at + 4] - '0'));
        return 5;
    }
    // "%%%" is a percent sign; any other code shows the character after the percent signs.
    size_t length = 1;
    element.character = decodeUtf8(text, at + 2, length);
    return 2 + length;
}

// The element at `at` and the bytes it takes.
size_t elementAt(std::string_view text, size_t at, TextElement& element) {
    element = TextElement{};
    const char byte = text[at];
    if (byte == '%' && at + 2 < text.size() && text[at + 1] == '%') return percentCode(text, at, element);
    if (byte == '^' && at + 1 < text.size()) {
        const char next = text[at + 1];
        if (next == ' ') {
            element.character = U'^';
            return 2;
        }
        if (next >= '@' && next <= '_') {
            element.character = static_cast<char32_t>(next - 64);
            return 2;
        }
    }
    if (byte == '\\' && text.compare(at, 3, "\\U+") == 0 && isHexDigits(text, at + 3, 4)) {
        element.character = hexValue(text.substr(at + 3, 4));
        return 7;
    }
    if (byte == '\\' && text.compare(at, 3, "\\M+") == 0 && isHexDigits(text, at + 3, 5)) {
        element.character = kReplacementCharacter;
        return 8;
    }
    size_t length = 1;
    element.character = decodeUtf8(text, at, length);
    return length;
}

}  // namespace

std::vector<TextElement> decodeTextElements(std::string_view stored) {
    std::vector<TextElement> elements;
    elements.reserve(stored.size());
    for (size_t at = 0; at < stored.size();) {
        TextElement element;
        at += elementAt(stored, at, element);
        elements.push_back(element);
    }
    return elements;
}

size_t shownCharacterCount(std::string_view stored) {
    size_t count = 0;
    for (size_t at = 0; at < stored.size();) {
        TextElement element;
        at += elementAt(stored, at, element);
        if (element.kind == TextElement::Kind::Character) ++count;
    }
    return count;
}

}  // namespace korva::db
