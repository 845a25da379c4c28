// Text encoding of DXF files. Before AC1021 a file's texts are in the code page
// of $DWGCODEPAGE, with characters outside it written as \U+XXXX escapes; from
// AC1021 they are UTF-8. The database holds UTF-8 either way.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace korva::dxf {

class TextCodec {
public:
    // A codec for a $DWGCODEPAGE value ("ANSI_1252", "ANSI_932", "DOS850", ...);
    // unknown names fall back to Windows-1252. utf8 = true for AC1021 and later.
    TextCodec(std::string_view dwgCodepage, bool utf8);
    ~TextCodec();
    TextCodec(const TextCodec&) = delete;
    TextCodec& operator=(const TextCodec&) = delete;

    bool isUtf8() const { return utf8_; }
    const std::string& codepage() const { return codepage_; }

    // File bytes to UTF-8: code page conversion and \U+XXXX escapes.
    // Returns false (and leaves out untouched) when the text needs no change.
    bool decode(std::string_view in, std::string& out) const;
    // UTF-8 to file bytes; characters the code page lacks become \U+XXXX.
    std::string encode(std::string_view utf8) const;

private:
    bool decodeSingleByte(std::string_view in, std::string& out) const;
    bool decodeWithIconv(std::string_view in, std::string& out) const;

    std::string codepage_;
    bool utf8_ = false;
    bool windows1252_ = false;
    struct Iconv;
    std::unique_ptr<Iconv> iconv_;
};

// Replaces \U+XXXX escapes by the characters they name. Returns false when the
// text holds none.
bool decodeUnicodeEscapes(std::string_view in, std::string& out);

}  // namespace korva::dxf
