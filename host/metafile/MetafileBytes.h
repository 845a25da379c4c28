// Little-endian words for the metafile codec: a growing byte buffer to write
// into, and a bounded view to read from that never reads past its end (a read
// beyond it gives zero and marks the view as overrun, so that one check after a
// record's fields tells whether the record was long enough).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace korva::metafile {

class ByteSink {
public:
    void u8(uint8_t value) { bytes_.push_back(value); }
    void u16(uint16_t value) {
        u8(static_cast<uint8_t>(value & 0xFF));
        u8(static_cast<uint8_t>(value >> 8));
    }
    void i16(int16_t value) { u16(static_cast<uint16_t>(value)); }
    void u32(uint32_t value) {
        u16(static_cast<uint16_t>(value & 0xFFFF));
        u16(static_cast<uint16_t>(value >> 16));
    }
    void append(std::span<const uint8_t> data) { bytes_.insert(bytes_.end(), data.begin(), data.end()); }
    // Overwrites a 32-bit value written earlier (record sizes known at the end).
    void patchU32(size_t offset, uint32_t value) {
        for (int i = 0; i < 4; ++i) bytes_[offset + static_cast<size_t>(i)] = static_cast<uint8_t>(value >> (8 * i));
    }
    size_t size() const { return bytes_.size(); }
    const std::vector<uint8_t>& bytes() const { return bytes_; }
    std::vector<uint8_t> take() { return std::move(bytes_); }

private:
    std::vector<uint8_t> bytes_;
};

class ByteSource {
public:
    explicit ByteSource(std::span<const uint8_t> data) : data_(data) {}

    uint8_t u8() {
        if (position_ >= data_.size()) {
            overrun_ = true;
            return 0;
        }
        return data_[position_++];
    }
    uint16_t u16() {
        const uint16_t low = u8();
        return static_cast<uint16_t>(low | (static_cast<uint16_t>(u8()) << 8));
    }
    int16_t i16() { return static_cast<int16_t>(u16()); }
    uint32_t u32() {
        const uint32_t low = u16();
        return low | (static_cast<uint32_t>(u16()) << 16);
    }
    std::span<const uint8_t> bytes(size_t count) {
        if (count > remaining()) {
            overrun_ = true;
            position_ = data_.size();
            return {};
        }
        const std::span<const uint8_t> part = data_.subspan(position_, count);
        position_ += count;
        return part;
    }

    size_t position() const { return position_; }
    size_t size() const { return data_.size(); }
    size_t remaining() const { return data_.size() - position_; }
    bool overrun() const { return overrun_; }

private:
    std::span<const uint8_t> data_;
    size_t position_ = 0;
    bool overrun_ = false;
};

}  // namespace korva::metafile
