// Splits binary DXF into typed group code / value pairs. Group codes are one
// byte (255 announces a two-byte code) in files before AC1012, two bytes after.
#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "dxf/RawTag.h"

namespace korva::dxf {

// The value layout binary DXF uses for a group code.
enum class BinaryValue { Text, Real, Int16, Int32, Int64, Bool, Chunk };
BinaryValue binaryValueOf(int code);

class BinaryTokenizer {
public:
    // data starts after the sentinel; base is the sentinel's length, for offsets.
    BinaryTokenizer(std::string_view data, bool twoByteCodes, size_t base)
        : data_(data), twoByteCodes_(twoByteCodes), base_(base) {}

    enum class Status { Ok, End, Error };

    Status next(RawTag& tag, std::string& error) {
        if (at_ >= data_.size()) return Status::End;
        const size_t start = at_;
        int code = 0;
        if (twoByteCodes_) {
            if (!need(2, start, error)) return Status::Error;
            int16_t c;
            std::memcpy(&c, data_.data() + at_, 2);
            code = c;
            at_ += 2;
        } else {
            code = static_cast<unsigned char>(data_[at_++]);
            if (code == 255) {
                if (!need(2, start, error)) return Status::Error;
                int16_t c;
                std::memcpy(&c, data_.data() + at_, 2);
                code = c;
                at_ += 2;
            }
        }
        tag.code = code;
        tag.position = base_ + start;
        switch (binaryValueOf(code)) {
            case BinaryValue::Real: return fixed<double>(tag, start, error);
            case BinaryValue::Int16: return fixed<int16_t>(tag, start, error);
            case BinaryValue::Int32: return fixed<int32_t>(tag, start, error);
            case BinaryValue::Int64: return fixed<int64_t>(tag, start, error);
            case BinaryValue::Bool: return fixed<uint8_t>(tag, start, error);
            case BinaryValue::Chunk: return chunk(tag, start, error);
            case BinaryValue::Text: return text(tag, start, error);
        }
        return Status::Error;
    }

    size_t offset() const { return base_ + at_; }
    std::string_view rest() const { return data_.substr(at_); }

private:
    bool need(size_t bytes, size_t start, std::string& error) {
        if (at_ + bytes <= data_.size()) return true;
        error = "byte offset " + std::to_string(base_ + start) + ": the file ends inside a binary tag";
        return false;
    }

    template <class T>
    Status fixed(RawTag& tag, size_t start, std::string& error) {
        if (!need(sizeof(T), start, error)) return Status::Error;
        T value;
        std::memcpy(&value, data_.data() + at_, sizeof(T));
        at_ += sizeof(T);
        if constexpr (std::is_same_v<T, double>) {
            tag.form = RawTag::Form::Real;
            tag.real = value;
        } else {
            tag.form = RawTag::Form::Integer;
            tag.integer = static_cast<int64_t>(value);
        }
        return Status::Ok;
    }

    Status chunk(RawTag& tag, size_t start, std::string& error) {
        if (!need(1, start, error)) return Status::Error;
        const size_t length = static_cast<unsigned char>(data_[at_++]);
        if (!need(length, start, error)) return Status::Error;
        tag.form = RawTag::Form::Bytes;
        tag.text = data_.substr(at_, length);
        at_ += length;
        return Status::Ok;
    }

    Status text(RawTag& tag, size_t start, std::string& error) {
        const size_t nul = data_.find('\0', at_);
        if (nul == std::string_view::npos) {
            error = "byte offset " + std::to_string(base_ + start) + ": a text value has no terminating zero byte";
            return Status::Error;
        }
        tag.form = RawTag::Form::Text;
        tag.text = data_.substr(at_, nul - at_);
        at_ = nul + 1;
        return Status::Ok;
    }

    std::string_view data_;
    bool twoByteCodes_;
    size_t base_;
    size_t at_ = 0;
};

}  // namespace korva::dxf
