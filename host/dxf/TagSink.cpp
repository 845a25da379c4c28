#include "dxf/TagSink.h"

#include <charconv>
#include <cstring>

#include "dxf/BinaryFormat.h"
#include "dxf/BinaryTokenizer.h"

namespace korva::dxf {

using db::TagKind;
using db::TagRef;

TagSink::TagSink(bool binary, bool twoByteCodes, const TextCodec& codec)
    : binary_(binary), twoByteCodes_(twoByteCodes), codec_(codec) {
    if (binary_) out_.append(kBinarySentinel);
}

void TagSink::string(int code, std::string_view text) {
    writeCode(code);
    if (binary_) {
        if (binaryValueOf(code) != BinaryValue::Text) {
            numberFromText(code, text);
            return;
        }
        appendText(text);
        out_.push_back('\0');
    } else {
        appendText(text);
        out_.push_back('\n');
    }
}

void TagSink::real(int code, double value) {
    writeCode(code);
    if (binary_) {
        binaryNumber(code, value, db::integerOfReal(value));
        return;
    }
    char buf[32];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
    (void)ec;
    out_.append(buf, end);
    if (std::memchr(buf, '.', static_cast<size_t>(end - buf)) == nullptr &&
        std::memchr(buf, 'e', static_cast<size_t>(end - buf)) == nullptr &&
        std::memchr(buf, 'n', static_cast<size_t>(end - buf)) == nullptr) {
        out_.append(".0");  // reals are written with a decimal point, as CAD programs do
    }
    out_.push_back('\n');
}

void TagSink::integer(int code, int64_t value) {
    writeCode(code);
    if (binary_) {
        binaryNumber(code, static_cast<double>(value), value);
        return;
    }
    char buf[24];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
    (void)ec;
    out_.append(buf, end);
    out_.push_back('\n');
}

void TagSink::handle(int code, db::Handle value) {
    char buf[20];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value, 16);
    (void)ec;
    for (char* p = buf; p < end; ++p) {
        if (*p >= 'a' && *p <= 'f') *p = static_cast<char>(*p - 32);
    }
    writeCode(code);
    out_.append(buf, end);
    out_.push_back(binary_ ? '\0' : '\n');
}

void TagSink::binaryChunk(int code, std::string_view bytes) {
    if (binary_ && binaryValueOf(code) == BinaryValue::Chunk) {
        // Binary chunks hold at most 255 bytes in binary DXF.
        do {
            const size_t n = std::min<size_t>(bytes.size(), 255);
            writeCode(code);
            out_.push_back(static_cast<char>(n));
            out_.append(bytes.substr(0, n));
            bytes.remove_prefix(n);
        } while (!bytes.empty());
        return;
    }
    static constexpr char kHex[] = "0123456789ABCDEF";
    writeCode(code);
    for (char c : bytes) {
        out_.push_back(kHex[(static_cast<unsigned char>(c) >> 4) & 0xF]);
        out_.push_back(kHex[static_cast<unsigned char>(c) & 0xF]);
    }
    out_.push_back(binary_ ? '\0' : '\n');
}

void TagSink::tag(TagRef t) {
    switch (t.kind()) {
        case TagKind::String: string(t.code(), t.text()); break;
        case TagKind::Real: real(t.code(), t.real()); break;
        case TagKind::Integer: integer(t.code(), t.integer()); break;
        case TagKind::Handle: handle(t.code(), t.handle()); break;
        case TagKind::Binary: binaryChunk(t.code(), t.text()); break;
        case TagKind::Point2:
        case TagKind::Point3: {
            const KcGePoint3d p = t.point();
            real(t.code(), p.x);
            real(t.code() + 10, p.y);
            if (t.kind() == TagKind::Point3) real(t.code() + 20, p.z);
            break;
        }
    }
}

void TagSink::tag(const db::Tag& t) {
    switch (t.kind) {
        case TagKind::String: string(t.code, t.text); break;
        case TagKind::Real: real(t.code, t.xyz[0]); break;
        case TagKind::Integer: integer(t.code, t.integer); break;
        case TagKind::Handle: handle(t.code, t.handleValue()); break;
        case TagKind::Binary: binaryChunk(t.code, t.text); break;
        case TagKind::Point2:
        case TagKind::Point3:
            real(t.code, t.xyz[0]);
            real(t.code + 10, t.xyz[1]);
            if (t.kind == TagKind::Point3) real(t.code + 20, t.xyz[2]);
            break;
    }
}

void TagSink::writeCode(int code) {
    if (binary_) {
        if (twoByteCodes_) {
            const auto c = static_cast<int16_t>(code);
            out_.append(reinterpret_cast<const char*>(&c), 2);
        } else if (code >= 0 && code < 255) {
            out_.push_back(static_cast<char>(code));
        } else {
            out_.push_back(static_cast<char>(255));
            const auto c = static_cast<int16_t>(code);
            out_.append(reinterpret_cast<const char*>(&c), 2);
        }
        return;
    }
    char buf[8];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, code);
    (void)ec;
    const auto width = static_cast<size_t>(end - buf);
    if (width < 3) out_.append(3 - width, ' ');  // group codes are right-aligned to three columns
    out_.append(buf, end);
    out_.push_back('\n');
}

// Texts never hold raw line breaks in a DXF file: control characters are written
// in caret notation.
void TagSink::appendText(std::string_view text) {
    bool plain = true;
    for (char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (u < 0x20 || u >= 0x80) {
            plain = false;
            break;
        }
    }
    if (plain) {
        out_.append(text);
        return;
    }
    const std::string encoded = codec_.encode(text);
    for (char c : encoded) {
        const auto u = static_cast<unsigned char>(c);
        if (u < 0x20 && (u != '\t' || binary_)) {
            if (binary_ && u != 0) {
                out_.push_back(c);
            } else {
                out_.push_back('^');
                out_.push_back(static_cast<char>(u + 64));
            }
        } else {
            out_.push_back(c);
        }
    }
}

void TagSink::binaryNumber(int code, double real, int64_t integer) {
    switch (binaryValueOf(code)) {
        case BinaryValue::Real: append(real); break;
        case BinaryValue::Int16: append(static_cast<int16_t>(integer)); break;
        case BinaryValue::Int32: append(static_cast<int32_t>(integer)); break;
        case BinaryValue::Int64: append(integer); break;
        case BinaryValue::Bool: out_.push_back(static_cast<char>(integer != 0)); break;
        case BinaryValue::Chunk: out_.push_back('\0'); break;
        case BinaryValue::Text: {
            char buf[32];
            auto [end, ec] = std::to_chars(buf, buf + sizeof buf, real);
            (void)ec;
            if (real == static_cast<double>(integer)) {
                auto [iend, iec] = std::to_chars(buf, buf + sizeof buf, integer);
                (void)iec;
                end = iend;
            }
            out_.append(buf, end);
            out_.push_back('\0');
            break;
        }
    }
}

// A value read as text where binary DXF wants a number (a damaged file): its number, or 0.
void TagSink::numberFromText(int code, std::string_view text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    binaryNumber(code, value, db::integerOfReal(value));
}

}  // namespace korva::dxf
