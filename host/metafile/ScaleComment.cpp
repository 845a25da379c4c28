// Encoding and decoding the scale comment.
#include "metafile/ScaleComment.h"

#include <bit>
#include <cmath>
#include <string_view>

#include "metafile/MetafileBytes.h"

namespace korva::metafile {

namespace {

constexpr std::string_view kSignature{"KORVA-WMF-SCALE\0", 16};
constexpr uint16_t kVersion = 1;

void writeDouble(ByteSink& sink, double value) {
    const auto bits = std::bit_cast<uint64_t>(value);
    sink.u32(static_cast<uint32_t>(bits & 0xFFFFFFFFu));
    sink.u32(static_cast<uint32_t>(bits >> 32));
}

double readDouble(ByteSource& source) {
    const uint64_t low = source.u32();
    const uint64_t high = source.u32();
    return std::bit_cast<double>(low | (high << 32));
}

}  // namespace

std::vector<uint8_t> encodeScaleComment(const ScaleComment& comment) {
    ByteSink sink;
    for (char c : kSignature) sink.u8(static_cast<uint8_t>(c));
    sink.u16(kVersion);
    writeDouble(sink, comment.unitsPerDrawingUnit);
    writeDouble(sink, comment.cornerX);
    writeDouble(sink, comment.cornerY);
    return sink.take();
}

std::optional<ScaleComment> decodeScaleComment(std::span<const uint8_t> data) {
    ByteSource source(data);
    for (char c : kSignature) {
        if (source.u8() != static_cast<uint8_t>(c)) return std::nullopt;
    }
    if (source.u16() != kVersion) return std::nullopt;
    ScaleComment comment;
    comment.unitsPerDrawingUnit = readDouble(source);
    comment.cornerX = readDouble(source);
    comment.cornerY = readDouble(source);
    if (source.overrun()) return std::nullopt;
    // The scale must survive being inverted: a vanishing value would place the picture at infinity.
    if (!std::isfinite(comment.unitsPerDrawingUnit) || !(comment.unitsPerDrawingUnit > 0.0) ||
        !std::isfinite(1.0 / (2.0 * comment.unitsPerDrawingUnit))) {
        return std::nullopt;
    }
    if (!std::isfinite(comment.cornerX) || !std::isfinite(comment.cornerY)) return std::nullopt;
    return comment;
}

std::optional<ScaleComment> findScaleComment(const MetafilePicture& picture) {
    for (const auto& data : picture.comments) {
        if (auto comment = decodeScaleComment(data)) return comment;
    }
    return std::nullopt;
}

}  // namespace korva::metafile
