// UTF-8 encoding and decoding by hand: the rules are short and the hot paths
// (names, texts of entity lists) must not allocate more than once.
#include "db/Utf8.h"

namespace korva::db {

namespace {

// Decodes one sequence at text[i]; advances i. Returns the Latin-1 value of the
// lead byte when the sequence is invalid.
char32_t decodeOne(std::string_view text, size_t& i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
        ++i;
        return lead;
    }
    int extra = 0;
    char32_t value = 0;
    if ((lead & 0xE0) == 0xC0) {
        extra = 1;
        value = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        extra = 2;
        value = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        extra = 3;
        value = lead & 0x07;
    } else {
        ++i;
        return lead;
    }
    if (i + static_cast<size_t>(extra) >= text.size()) {
        ++i;
        return lead;
    }
    for (int k = 1; k <= extra; ++k) {
        const auto next = static_cast<unsigned char>(text[i + static_cast<size_t>(k)]);
        if ((next & 0xC0) != 0x80) {
            ++i;
            return lead;
        }
        value = (value << 6) | (next & 0x3F);
    }
    static constexpr char32_t kMinimum[] = {0, 0x80, 0x800, 0x10000};
    if (value < kMinimum[extra] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
        ++i;
        return lead;
    }
    i += static_cast<size_t>(extra) + 1;
    return value;
}

}  // namespace

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c <= 0x10FFFF) {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        appendUtf8(out, 0xFFFD);
    }
}

std::u32string utf8ToUtf32(std::string_view utf8) {
    std::u32string out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) out.push_back(decodeOne(utf8, i));
    return out;
}

std::string utf32ToUtf8(std::u32string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char32_t c : text) appendUtf8(out, c);
    return out;
}

std::wstring utf8ToWide(std::string_view utf8) {
    static_assert(sizeof(wchar_t) == 4, "the host API uses 32-bit wide characters");
    std::wstring out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) out.push_back(static_cast<wchar_t>(decodeOne(utf8, i)));
    return out;
}

std::string wideToUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (wchar_t c : text) appendUtf8(out, static_cast<char32_t>(c));
    return out;
}

char32_t upperCodepoint(char32_t c) {
    if (c < 0x80) return (c >= 'a' && c <= 'z') ? c - 32 : c;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 0x20;
    if (c == 0xFF) return 0x178;
    if (c >= 0x100 && c <= 0x137) return (c & 1) ? c - 1 : c;
    if (c >= 0x139 && c <= 0x148) return (c & 1) ? c : c - 1;
    if (c >= 0x14A && c <= 0x177) return (c & 1) ? c - 1 : c;
    if (c >= 0x179 && c <= 0x17E) return (c & 1) ? c : c - 1;
    if (c >= 0x3B1 && c <= 0x3C9) return c == 0x3C2 ? 0x3A3 : c - 0x20;
    if (c == 0x3AC) return 0x386;
    if (c >= 0x3AD && c <= 0x3AF) return c - 37;
    if (c == 0x3CC) return 0x38C;
    if (c == 0x3CD || c == 0x3CE) return c - 63;
    if (c >= 0x430 && c <= 0x44F) return c - 0x20;
    if (c >= 0x450 && c <= 0x45F) return c - 0x50;
    return c;
}

}  // namespace korva::db
