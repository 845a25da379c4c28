// Reading metafiles: the two headers, then the record loop. Every size is
// checked against what is really there before anything is read, so a damaged
// file is refused with the record, its offset and what did not fit.
#include "metafile/MetafileReader.h"

#include <string>

#include "metafile/MetafileBytes.h"
#include "metafile/MetafilePlayer.h"

namespace korva::metafile {

namespace {

std::string hex(uint32_t value) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    do {
        text.insert(text.begin(), digits[value % 16]);
        value /= 16;
    } while (value != 0);
    return "0x" + text;
}

// The placeable header, when the file starts with its key. Empty on success.
std::string readPlaceable(ByteSource& source, MetafilePicture& picture) {
    ByteSource probe = source;
    if (probe.u32() != kPlaceableKey) return {};
    if (source.remaining() < kPlaceableHeaderBytes) {
        return "the placeable header is truncated: it needs 22 bytes, the file has " + std::to_string(source.remaining());
    }
    source.u32();
    const uint16_t handle = source.u16();
    PlaceableHeader header;
    header.boundingBox.left = source.i16();
    header.boundingBox.top = source.i16();
    header.boundingBox.right = source.i16();
    header.boundingBox.bottom = source.i16();
    header.unitsPerInch = source.u16();
    const uint32_t reserved = source.u32();
    const uint16_t checksum = source.u16();
    uint16_t expected = placeableChecksum(header);
    expected ^= handle;  // the checksum covers the words as stored
    expected ^= static_cast<uint16_t>(reserved & 0xFFFF);
    expected ^= static_cast<uint16_t>(reserved >> 16);
    if (checksum != expected) {
        return "the placeable header's checksum is " + hex(checksum) + ", its words give " + hex(expected);
    }
    if (header.unitsPerInch == 0) return "the placeable header gives 0 units per inch";
    picture.placeable = header;
    return {};
}

// META_HEADER; sets the number of bytes the header says the metafile has.
std::string readMetaHeader(ByteSource& source, size_t& metafileBytes) {
    if (source.remaining() < kMetaHeaderBytes) {
        return "the metafile header is truncated: it needs 18 bytes, " + std::to_string(source.remaining()) + " remain";
    }
    const uint16_t type = source.u16();
    const uint16_t headerWords = source.u16();
    const uint16_t version = source.u16();
    const uint32_t sizeWords = source.u32();
    source.u16();  // NumberOfObjects: the table grows as objects are made
    source.u32();  // MaxRecord: every record is checked on its own
    source.u16();  // NumberOfMembers: unused
    if (type != static_cast<uint16_t>(MetafileType::Memory) && type != static_cast<uint16_t>(MetafileType::Disk)) {
        return "this is not a metafile: it starts with neither the placeable key " + hex(kPlaceableKey) +
               " nor a metafile header (type " + hex(type) + ")";
    }
    if (headerWords != kMetaHeaderWords) {
        return "the metafile header gives its size as " + std::to_string(headerWords) + " words instead of 9";
    }
    if (version != kVersionWithDib && version != kVersionWithoutDib) {
        return "the metafile header gives the unknown version " + hex(version);
    }
    const uint64_t bytes = static_cast<uint64_t>(sizeWords) * 2;
    if (bytes < kMetaHeaderBytes + kRecordHeaderBytes) {
        return "the metafile header gives a size of " + std::to_string(sizeWords) + " words, too small for any record";
    }
    const uint64_t available = source.remaining() + kMetaHeaderBytes;
    if (bytes > available) {
        return "the file is truncated: the metafile header gives " + std::to_string(bytes) + " bytes, " +
               std::to_string(available) + " are there";
    }
    metafileBytes = static_cast<size_t>(bytes);
    return {};
}

}  // namespace

MetafileReadResult readMetafile(std::span<const uint8_t> bytes) {
    MetafileReadResult result;
    ByteSource file(bytes);
    if (bytes.size() < kMetaHeaderBytes) {
        result.error = "the file is too short for a metafile (" + std::to_string(bytes.size()) + " bytes)";
        return result;
    }
    if (std::string error = readPlaceable(file, result.picture); !error.empty()) {
        result.error = std::move(error);
        return result;
    }
    const size_t headerOffset = file.position();
    size_t metafileBytes = 0;
    if (std::string error = readMetaHeader(file, metafileBytes); !error.empty()) {
        result.error = std::move(error);
        return result;
    }
    // Records end where the header says the metafile ends; bytes after it are not the metafile's.
    ByteSource records(bytes.subspan(file.position(), metafileBytes - kMetaHeaderBytes));
    MetafilePlayer player(result.picture);
    while (true) {
        const size_t offset = headerOffset + kMetaHeaderBytes + records.position();
        const size_t index = result.picture.recordCount + 1;
        if (records.remaining() < kRecordHeaderBytes) {
            result.error = records.remaining() == 0
                               ? "the metafile ends without an end-of-file record"
                               : "record " + std::to_string(index) + " at byte " + std::to_string(offset) +
                                     " is truncated: " + std::to_string(records.remaining()) + " bytes remain";
            return result;
        }
        const uint32_t sizeWords = records.u32();
        const uint16_t function = records.u16();
        ++result.picture.recordCount;
        const std::string where = "record " + std::to_string(index) + " (" + hex(function) + ") at byte " +
                                  std::to_string(offset);
        if (sizeWords < 3) {
            result.error = where + " gives its size as " + std::to_string(sizeWords) + " words, less than its own header";
            return result;
        }
        const uint64_t parameterBytes = static_cast<uint64_t>(sizeWords) * 2 - kRecordHeaderBytes;
        if (parameterBytes > records.remaining()) {
            result.error = where + " is truncated: it gives " + std::to_string(sizeWords) + " words, " +
                           std::to_string((records.remaining() + kRecordHeaderBytes) / 2) + " remain";
            return result;
        }
        if (function == static_cast<uint16_t>(RecordFunction::Eof)) return result;
        ByteSource parameters(records.bytes(static_cast<size_t>(parameterBytes)));
        if (std::string error = player.play(function, parameters); !error.empty()) {
            result.error = where + ": " + error;
            return result;
        }
    }
}

}  // namespace korva::metafile
