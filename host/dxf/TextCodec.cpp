// Code pages: Windows-1252 (by far the most common) by table, every other code
// page through the C library's iconv.
#include "dxf/TextCodec.h"

#include <iconv.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "db/TextCase.h"
#include "db/Utf8.h"

namespace korva::dxf {

namespace {

// Windows-1252 0x80-0x9F; the rest of the upper half equals Latin-1.
constexpr char16_t kWindows1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char32_t fromWindows1252(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F) return kWindows1252High[byte - 0x80];
    return byte;
}

int toWindows1252(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<int>(c);
    for (int i = 0; i < 32; ++i) {
        if (kWindows1252High[i] == c) return 0x80 + i;
    }
    return -1;
}

std::string iconvName(std::string_view dwgCodepage) {
    const std::string upper = db::asciiUpper(dwgCodepage);
    if (upper.rfind("ANSI_", 0) == 0) return "CP" + upper.substr(5);
    if (upper.rfind("DOS", 0) == 0) return "CP" + upper.substr(3);
    if (upper.rfind("ISO8859-", 0) == 0) return "ISO-8859-" + upper.substr(8);
    if (upper == "BIG5") return "BIG5";
    if (upper == "GB2312") return "GB2312";
    if (upper == "KSC5601") return "CP949";
    if (upper == "MACINTOSH") return "MACINTOSH";
    return {};
}

bool hexDigit(char c, unsigned& value) {
    if (c >= '0' && c <= '9') value = static_cast<unsigned>(c - '0');
    else if (c >= 'a' && c <= 'f') value = static_cast<unsigned>(c - 'a' + 10);
    else if (c >= 'A' && c <= 'F') value = static_cast<unsigned>(c - 'A' + 10);
    else return false;
    return true;
}

void appendEscape4(std::string& out, char32_t c) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    out += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) out.push_back(kHex[(c >> shift) & 0xF]);
}

// Escapes hold four digits: characters above the BMP go as a surrogate pair.
void appendEscape(std::string& out, char32_t c) {
    if (c <= 0xFFFF) {
        appendEscape4(out, c);
        return;
    }
    const char32_t v = c - 0x10000;
    appendEscape4(out, 0xD800 + (v >> 10));
    appendEscape4(out, 0xDC00 + (v & 0x3FF));
}

}  // namespace

struct TextCodec::Iconv {
    iconv_t toUtf8 = reinterpret_cast<iconv_t>(-1);
    iconv_t fromUtf8 = reinterpret_cast<iconv_t>(-1);
    ~Iconv() {
        if (toUtf8 != reinterpret_cast<iconv_t>(-1)) iconv_close(toUtf8);
        if (fromUtf8 != reinterpret_cast<iconv_t>(-1)) iconv_close(fromUtf8);
    }
};

TextCodec::TextCodec(std::string_view dwgCodepage, bool utf8) : codepage_(dwgCodepage), utf8_(utf8) {
    if (utf8_) return;
    const std::string name = iconvName(dwgCodepage);
    if (name.empty() || name == "CP1252") {
        windows1252_ = true;
        return;
    }
    auto conv = std::make_unique<Iconv>();
    conv->toUtf8 = iconv_open("UTF-8", name.c_str());
    conv->fromUtf8 = iconv_open(name.c_str(), "UTF-8");
    if (conv->toUtf8 == reinterpret_cast<iconv_t>(-1) || conv->fromUtf8 == reinterpret_cast<iconv_t>(-1)) {
        windows1252_ = true;  // a code page the C library lacks: read the bytes as Windows-1252
        return;
    }
    iconv_ = std::move(conv);
}

TextCodec::~TextCodec() = default;

bool TextCodec::decode(std::string_view in, std::string& out) const {
    if (utf8_) return false;
    bool high = false;
    bool escape = false;
    for (char c : in) {
        if (static_cast<unsigned char>(c) >= 0x80) high = true;
        else if (c == '\\') escape = true;
    }
    if (!high && !escape) return false;
    std::string converted;
    std::string_view text = in;
    if (high) {
        if (windows1252_ ? !decodeSingleByte(in, converted) : !decodeWithIconv(in, converted)) return false;
        text = converted;
    }
    if (escape && decodeUnicodeEscapes(text, out)) return true;
    if (!high) return false;
    out = std::move(converted);
    return true;
}

bool TextCodec::decodeSingleByte(std::string_view in, std::string& out) const {
    out.clear();
    out.reserve(in.size() + 8);
    for (char c : in) db::appendUtf8(out, fromWindows1252(static_cast<unsigned char>(c)));
    return true;
}

bool TextCodec::decodeWithIconv(std::string_view in, std::string& out) const {
    std::vector<char> input(in.begin(), in.end());
    out.assign(in.size() * 4 + 8, '\0');
    char* src = input.data();
    size_t srcLeft = input.size();
    char* dst = out.data();
    size_t dstLeft = out.size();
    iconv(iconv_->toUtf8, nullptr, nullptr, nullptr, nullptr);
    while (srcLeft > 0) {
        if (iconv(iconv_->toUtf8, &src, &srcLeft, &dst, &dstLeft) != static_cast<size_t>(-1)) break;
        if (errno != EILSEQ && errno != EINVAL) return false;
        // A byte the code page cannot convert: keep it as its Latin-1 character.
        char32_t c = static_cast<unsigned char>(*src);
        std::string replacement;
        db::appendUtf8(replacement, c);
        if (replacement.size() > dstLeft) return false;
        std::memcpy(dst, replacement.data(), replacement.size());
        dst += replacement.size();
        dstLeft -= replacement.size();
        ++src;
        --srcLeft;
    }
    out.resize(out.size() - dstLeft);
    return true;
}

std::string TextCodec::encode(std::string_view utf8) const {
    bool ascii = true;
    for (char c : utf8) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
            break;
        }
    }
    if (utf8_ || ascii) return std::string(utf8);
    std::string out;
    out.reserve(utf8.size() + 8);
    for (char32_t c : db::utf8ToUtf32(utf8)) {
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
            continue;
        }
        if (windows1252_) {
            const int byte = toWindows1252(c);
            if (byte >= 0) out.push_back(static_cast<char>(byte));
            else appendEscape(out, c);
            continue;
        }
        std::string one;
        db::appendUtf8(one, c);
        char buffer[8];
        char* src = one.data();
        size_t srcLeft = one.size();
        char* dst = buffer;
        size_t dstLeft = sizeof buffer;
        iconv(iconv_->fromUtf8, nullptr, nullptr, nullptr, nullptr);
        if (iconv(iconv_->fromUtf8, &src, &srcLeft, &dst, &dstLeft) == static_cast<size_t>(-1)) {
            appendEscape(out, c);
        } else {
            out.append(buffer, sizeof buffer - dstLeft);
        }
    }
    return out;
}

bool decodeUnicodeEscapes(std::string_view in, std::string& out) {
    if (in.find("\\U+") == std::string_view::npos && in.find("\\u+") == std::string_view::npos) return false;
    out.clear();
    out.reserve(in.size());
    size_t i = 0;
    char32_t pendingHigh = 0;
    while (i < in.size()) {
        unsigned digits[4];
        const bool isEscape = i + 7 <= in.size() && in[i] == '\\' && (in[i + 1] == 'U' || in[i + 1] == 'u') &&
                              in[i + 2] == '+' && hexDigit(in[i + 3], digits[0]) && hexDigit(in[i + 4], digits[1]) &&
                              hexDigit(in[i + 5], digits[2]) && hexDigit(in[i + 6], digits[3]);
        if (!isEscape) {
            if (pendingHigh) {
                db::appendUtf8(out, 0xFFFD);
                pendingHigh = 0;
            }
            out.push_back(in[i++]);
            continue;
        }
        const char32_t c = (digits[0] << 12) | (digits[1] << 8) | (digits[2] << 4) | digits[3];
        i += 7;
        if (c >= 0xD800 && c <= 0xDBFF) {
            pendingHigh = c;
            continue;
        }
        if (c >= 0xDC00 && c <= 0xDFFF && pendingHigh) {
            db::appendUtf8(out, 0x10000 + ((pendingHigh - 0xD800) << 10) + (c - 0xDC00));
            pendingHigh = 0;
            continue;
        }
        db::appendUtf8(out, c);
    }
    return true;
}

}  // namespace korva::dxf
