// TagList: the ordered tags of one object, packed into a single allocation.
//
// A drawing holds millions of tags, so each is stored as a 2-byte group code, a
// 1-byte kind and its value (8 bytes for numbers and handles, 16 or 24 for points,
// a varint length and the bytes for texts). Reading walks the bytes; editing
// decodes to Tag values and encodes a new list, which is cheap for one object.
#pragma once

#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "db/Tag.h"

namespace korva::db {

// A view of one packed tag.
class TagRef {
public:
    TagRef() = default;
    TagRef(int16_t code, TagKind kind, const uint8_t* payload) : code_(code), kind_(kind), payload_(payload) {}

    int code() const { return code_; }
    TagKind kind() const { return kind_; }
    bool isPoint() const { return kind_ == TagKind::Point2 || kind_ == TagKind::Point3; }
    bool isNumeric() const { return kind_ == TagKind::Real || kind_ == TagKind::Integer; }

    double real() const;       // Real (Integer values convert)
    int64_t integer() const;   // Integer (Real values truncate)
    Handle handle() const;     // Handle, 0 for other kinds
    KcGePoint3d point() const; // Point2 (z = 0) and Point3
    std::string_view text() const;  // String and Binary bytes; empty for other kinds
    Tag toTag() const;

private:
    int16_t code_ = 0;
    TagKind kind_ = TagKind::String;
    const uint8_t* payload_ = nullptr;
};

class TagList {
public:
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = TagRef;
        using difference_type = std::ptrdiff_t;
        using pointer = const TagRef*;
        using reference = TagRef;

        Iterator() = default;
        explicit Iterator(const uint8_t* at) : at_(at) {}
        TagRef operator*() const;
        Iterator& operator++();
        Iterator operator++(int) { Iterator old = *this; ++*this; return old; }
        bool operator==(const Iterator& other) const { return at_ == other.at_; }
        const uint8_t* position() const { return at_; }

    private:
        const uint8_t* at_ = nullptr;
    };

    TagList() = default;
    TagList(const TagList& other);
    TagList& operator=(const TagList& other);
    TagList(TagList&&) noexcept = default;
    TagList& operator=(TagList&&) noexcept = default;

    static TagList encode(std::span<const Tag> tags);
    std::vector<Tag> decode() const;

    Iterator begin() const { return Iterator(bytes_.get()); }
    Iterator end() const { return Iterator(bytes_.get() + size_); }
    uint32_t count() const { return count_; }
    bool empty() const { return count_ == 0; }
    uint32_t byteSize() const { return size_; }

    // The first tag with this code; false when there is none.
    bool find(int code, TagRef& out) const;
    // The tag at a position (linear walk).
    TagRef at(uint32_t index) const;
    bool operator==(const TagList& other) const;

private:
    friend class TagListBuilder;
    std::unique_ptr<uint8_t[]> bytes_;
    uint32_t size_ = 0;
    uint32_t count_ = 0;
};

// Appends tags into a reusable scratch buffer and hands out exact-size lists.
// The DXF reader keeps one builder for a whole file.
class TagListBuilder {
public:
    void addString(int code, std::string_view value) { addBytes(code, TagKind::String, value); }
    void addBinary(int code, std::string_view bytes) { addBytes(code, TagKind::Binary, bytes); }
    void addReal(int code, double value) { addFixed(code, TagKind::Real, &value, 8); }
    void addInteger(int code, int64_t value) { addFixed(code, TagKind::Integer, &value, 8); }
    void addHandle(int code, Handle value) { addFixed(code, TagKind::Handle, &value, 8); }
    void addPoint2(int code, double x, double y) {
        const double v[2] = {x, y};
        addFixed(code, TagKind::Point2, v, 16);
    }
    void addPoint3(int code, double x, double y, double z) {
        const double v[3] = {x, y, z};
        addFixed(code, TagKind::Point3, v, 24);
    }
    void add(const Tag& tag);
    void add(const TagRef& tag);

    uint32_t count() const { return count_; }
    bool empty() const { return count_ == 0; }
    TagList finish();  // returns the list and clears the builder
    void clear() { buffer_.clear(); count_ = 0; }

private:
    void addHeader(int code, TagKind kind) {
        const int16_t c = static_cast<int16_t>(code);
        const size_t at = buffer_.size();
        buffer_.resize(at + 3);
        std::memcpy(buffer_.data() + at, &c, 2);
        buffer_[at + 2] = static_cast<uint8_t>(kind);
        ++count_;
    }
    void addFixed(int code, TagKind kind, const void* value, size_t bytes) {
        addHeader(code, kind);
        const size_t at = buffer_.size();
        buffer_.resize(at + bytes);
        std::memcpy(buffer_.data() + at, value, bytes);
    }
    void addBytes(int code, TagKind kind, std::string_view value);

    std::vector<uint8_t> buffer_;
    uint32_t count_ = 0;
};

}  // namespace korva::db
