// Name folding: ASCII fast path, otherwise through the code-point table of Utf8.h.
#include "db/TextCase.h"

#include "db/Utf8.h"

namespace korva::db {

std::string asciiUpper(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

std::string foldName(std::string_view utf8) {
    bool ascii = true;
    for (char c : utf8) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
            break;
        }
    }
    if (ascii) return asciiUpper(utf8);
    std::u32string wide = utf8ToUtf32(utf8);
    for (char32_t& c : wide) c = upperCodepoint(c);
    return utf32ToUtf8(wide);
}

bool namesEqual(std::string_view a, std::string_view b) {
    if (a.size() == b.size()) {
        bool same = true;
        for (size_t i = 0; i < a.size() && same; ++i) {
            char x = a[i], y = b[i];
            if (x >= 'a' && x <= 'z') x = static_cast<char>(x - 32);
            if (y >= 'a' && y <= 'z') y = static_cast<char>(y - 32);
            same = x == y;
        }
        if (same) return true;
    }
    return foldName(a) == foldName(b);
}

}  // namespace korva::db
