// Metafiles built word by word for the codec tests, without the writer under
// test: records as (function, parameter words), wrapped in a META_HEADER whose
// size and largest record are counted here, with an optional placeable header.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace korva::test::metafile {

class Words {
public:
    Words& u16(uint16_t value) {
        bytes.push_back(static_cast<uint8_t>(value & 0xFF));
        bytes.push_back(static_cast<uint8_t>(value >> 8));
        return *this;
    }
    Words& i16(int value) { return u16(static_cast<uint16_t>(static_cast<int16_t>(value))); }
    Words& u32(uint32_t value) { return u16(static_cast<uint16_t>(value & 0xFFFF)).u16(static_cast<uint16_t>(value >> 16)); }
    Words& append(const std::vector<uint8_t>& more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }
    std::vector<uint8_t> bytes;
};

// One record: its size in words, the function, the parameter words.
inline std::vector<uint8_t> record(uint16_t function, std::initializer_list<int> parameters) {
    Words words;
    words.u32(static_cast<uint32_t>(3 + parameters.size())).u16(function);
    for (int p : parameters) words.i16(p);
    return words.bytes;
}

inline std::vector<uint8_t> eofRecord() { return record(0x0000, {}); }

struct Placeable {
    int left = 0, top = 0, right = 100, bottom = 100;
    uint16_t inch = 1440;
};

// The XOR of the ten words, computed from the bytes as a reader would.
inline uint16_t checksumOfBytes(const std::vector<uint8_t>& header) {
    uint16_t checksum = 0;
    for (size_t i = 0; i < 20; i += 2) checksum ^= static_cast<uint16_t>(header[i] | (header[i + 1] << 8));
    return checksum;
}

inline std::vector<uint8_t> placeableHeader(const Placeable& p) {
    Words words;
    words.u32(0x9AC6CDD7).u16(0).i16(p.left).i16(p.top).i16(p.right).i16(p.bottom).u16(p.inch).u32(0);
    words.u16(checksumOfBytes(words.bytes));
    return words.bytes;
}

// A whole metafile around the records (which should end with eofRecord()).
inline std::vector<uint8_t> metafileOf(const std::vector<std::vector<uint8_t>>& records, const Placeable* placeable,
                                       uint16_t objects = 4) {
    size_t words = 9;
    size_t largest = 0;
    for (const auto& r : records) {
        words += r.size() / 2;
        largest = std::max(largest, r.size() / 2);
    }
    Words file;
    if (placeable) file.append(placeableHeader(*placeable));
    file.u16(2).u16(9).u16(0x0300).u32(static_cast<uint32_t>(words)).u16(objects).u32(static_cast<uint32_t>(largest)).u16(0);
    for (const auto& r : records) file.append(r);
    return file.bytes;
}

}  // namespace korva::test::metafile
