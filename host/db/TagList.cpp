// Packing and unpacking of tag lists.
#include "db/TagList.h"

#include <cmath>

namespace korva::db {

namespace {

// Texts carry a LEB128 length so that the common short strings cost one byte.
size_t readVarint(const uint8_t* p, uint32_t& value) {
    value = 0;
    int shift = 0;
    size_t used = 0;
    while (true) {
        const uint8_t byte = p[used++];
        value |= static_cast<uint32_t>(byte & 0x7F) << shift;
        if ((byte & 0x80) == 0) return used;
        shift += 7;
    }
}

size_t payloadSize(TagKind kind, const uint8_t* payload) {
    switch (kind) {
        case TagKind::Real:
        case TagKind::Integer:
        case TagKind::Handle: return 8;
        case TagKind::Point2: return 16;
        case TagKind::Point3: return 24;
        case TagKind::String:
        case TagKind::Binary: {
            uint32_t length = 0;
            const size_t used = readVarint(payload, length);
            return used + length;
        }
    }
    return 0;
}

template <class T>
T load(const uint8_t* p) {
    T value;
    std::memcpy(&value, p, sizeof value);
    return value;
}

}  // namespace

double TagRef::real() const {
    if (kind_ == TagKind::Real) return load<double>(payload_);
    if (kind_ == TagKind::Integer) return static_cast<double>(load<int64_t>(payload_));
    if (isPoint()) return load<double>(payload_);
    return 0.0;
}

int64_t TagRef::integer() const {
    if (kind_ == TagKind::Integer) return load<int64_t>(payload_);
    if (kind_ == TagKind::Real) {
        return integerOfReal(load<double>(payload_));
    }
    return 0;
}

Handle TagRef::handle() const { return kind_ == TagKind::Handle ? load<Handle>(payload_) : 0; }

KcGePoint3d TagRef::point() const {
    if (kind_ == TagKind::Point3) return {load<double>(payload_), load<double>(payload_ + 8), load<double>(payload_ + 16)};
    if (kind_ == TagKind::Point2) return {load<double>(payload_), load<double>(payload_ + 8), 0.0};
    if (kind_ == TagKind::Real) return {load<double>(payload_), 0.0, 0.0};
    return {};
}

std::string_view TagRef::text() const {
    if (kind_ != TagKind::String && kind_ != TagKind::Binary) return {};
    uint32_t length = 0;
    const size_t used = readVarint(payload_, length);
    return {reinterpret_cast<const char*>(payload_ + used), length};
}

Tag TagRef::toTag() const {
    Tag t;
    t.code = code_;
    t.kind = kind_;
    switch (kind_) {
        case TagKind::String:
        case TagKind::Binary: t.text = text(); break;
        case TagKind::Real: t.xyz[0] = real(); break;
        case TagKind::Integer:
        case TagKind::Handle: t.integer = load<int64_t>(payload_); break;
        case TagKind::Point2:
        case TagKind::Point3: {
            const KcGePoint3d p = point();
            t.xyz = {p.x, p.y, p.z};
            break;
        }
    }
    return t;
}

bool Tag::operator==(const Tag& other) const {
    if (code != other.code || kind != other.kind) return false;
    switch (kind) {
        case TagKind::String:
        case TagKind::Binary: return text == other.text;
        case TagKind::Real: return xyz[0] == other.xyz[0] || (std::isnan(xyz[0]) && std::isnan(other.xyz[0]));
        case TagKind::Integer:
        case TagKind::Handle: return integer == other.integer;
        case TagKind::Point2: return xyz[0] == other.xyz[0] && xyz[1] == other.xyz[1];
        case TagKind::Point3: return xyz == other.xyz;
    }
    return false;
}

TagRef TagList::Iterator::operator*() const {
    return TagRef(load<int16_t>(at_), static_cast<TagKind>(at_[2]), at_ + 3);
}

TagList::Iterator& TagList::Iterator::operator++() {
    const auto kind = static_cast<TagKind>(at_[2]);
    at_ += 3 + payloadSize(kind, at_ + 3);
    return *this;
}

TagList::TagList(const TagList& other) : size_(other.size_), count_(other.count_) {
    if (size_ > 0) {
        bytes_ = std::make_unique_for_overwrite<uint8_t[]>(size_);
        std::memcpy(bytes_.get(), other.bytes_.get(), size_);
    }
}

TagList& TagList::operator=(const TagList& other) {
    if (this != &other) {
        TagList copy(other);
        *this = std::move(copy);
    }
    return *this;
}

TagList TagList::encode(std::span<const Tag> tags) {
    TagListBuilder builder;
    for (const Tag& tag : tags) builder.add(tag);
    return builder.finish();
}

std::vector<Tag> TagList::decode() const {
    std::vector<Tag> tags;
    tags.reserve(count_);
    for (TagRef ref : *this) tags.push_back(ref.toTag());
    return tags;
}

bool TagList::find(int code, TagRef& out) const {
    for (TagRef ref : *this) {
        if (ref.code() == code) {
            out = ref;
            return true;
        }
    }
    return false;
}

TagRef TagList::at(uint32_t index) const {
    auto it = begin();
    for (uint32_t i = 0; i < index; ++i) ++it;
    return *it;
}

bool TagList::operator==(const TagList& other) const {
    if (count_ != other.count_) return false;
    auto a = begin();
    auto b = other.begin();
    for (; a != end(); ++a, ++b) {
        if (!((*a).toTag() == (*b).toTag())) return false;
    }
    return true;
}

void TagListBuilder::addBytes(int code, TagKind kind, std::string_view value) {
    addHeader(code, kind);
    uint32_t length = static_cast<uint32_t>(value.size());
    do {
        uint8_t byte = length & 0x7F;
        length >>= 7;
        if (length != 0) byte |= 0x80;
        buffer_.push_back(byte);
    } while (length != 0);
    buffer_.insert(buffer_.end(), value.begin(), value.end());
}

void TagListBuilder::add(const Tag& tag) {
    switch (tag.kind) {
        case TagKind::String: addString(tag.code, tag.text); break;
        case TagKind::Binary: addBinary(tag.code, tag.text); break;
        case TagKind::Real: addReal(tag.code, tag.xyz[0]); break;
        case TagKind::Integer: addInteger(tag.code, tag.integer); break;
        case TagKind::Handle: addHandle(tag.code, tag.handleValue()); break;
        case TagKind::Point2: addPoint2(tag.code, tag.xyz[0], tag.xyz[1]); break;
        case TagKind::Point3: addPoint3(tag.code, tag.xyz[0], tag.xyz[1], tag.xyz[2]); break;
    }
}

void TagListBuilder::add(const TagRef& tag) {
    switch (tag.kind()) {
        case TagKind::String: addString(tag.code(), tag.text()); break;
        case TagKind::Binary: addBinary(tag.code(), tag.text()); break;
        case TagKind::Real: addReal(tag.code(), tag.real()); break;
        case TagKind::Integer: addInteger(tag.code(), tag.integer()); break;
        case TagKind::Handle: addHandle(tag.code(), tag.handle()); break;
        case TagKind::Point2: {
            const KcGePoint3d p = tag.point();
            addPoint2(tag.code(), p.x, p.y);
            break;
        }
        case TagKind::Point3: {
            const KcGePoint3d p = tag.point();
            addPoint3(tag.code(), p.x, p.y, p.z);
            break;
        }
    }
}

TagList TagListBuilder::finish() {
    TagList list;
    list.size_ = static_cast<uint32_t>(buffer_.size());
    list.count_ = count_;
    if (list.size_ > 0) {
        list.bytes_ = std::make_unique_for_overwrite<uint8_t[]>(list.size_);
        std::memcpy(list.bytes_.get(), buffer_.data(), list.size_);
    }
    clear();
    return list;
}

}  // namespace korva::db
