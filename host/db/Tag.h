// One DXF tag as a value: a group code and the value its code calls for. Used
// wherever tags are built or edited; stored tags live packed in a TagList.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "db/GroupCode.h"
#include "kcge.h"

namespace korva::db {

using Handle = uint64_t;

// A real as an integer, 0 for values no 64-bit integer holds (NaN, infinities,
// huge numbers in damaged files).
inline int64_t integerOfReal(double value) {
    return (value > -9.2e18 && value < 9.2e18) ? static_cast<int64_t>(value) : 0;
}

struct Tag {
    int16_t code = 0;
    TagKind kind = TagKind::String;
    std::array<double, 3> xyz{};  // Real: xyz[0]; Point2 and Point3: the coordinates
    int64_t integer = 0;          // Integer, and Handle (as the unsigned bit pattern)
    std::string text;             // String (UTF-8) and Binary (raw bytes)

    static Tag make(int code, TagKind kind) {
        Tag t;
        t.code = static_cast<int16_t>(code);
        t.kind = kind;
        return t;
    }
    static Tag string(int code, std::string_view value) {
        Tag t = make(code, TagKind::String);
        t.text = value;
        return t;
    }
    static Tag real(int code, double value) {
        Tag t = make(code, TagKind::Real);
        t.xyz[0] = value;
        return t;
    }
    static Tag integerValue(int code, int64_t value) {
        Tag t = make(code, TagKind::Integer);
        t.integer = value;
        return t;
    }
    static Tag handle(int code, Handle value) {
        Tag t = make(code, TagKind::Handle);
        t.integer = static_cast<int64_t>(value);
        return t;
    }
    static Tag point(int code, const KcGePoint3d& p) {
        Tag t = make(code, TagKind::Point3);
        t.xyz = {p.x, p.y, p.z};
        return t;
    }
    static Tag point2d(int code, double x, double y) {
        Tag t = make(code, TagKind::Point2);
        t.xyz = {x, y, 0.0};
        return t;
    }
    static Tag binary(int code, std::string_view bytes) {
        Tag t = make(code, TagKind::Binary);
        t.text = bytes;
        return t;
    }

    double realValue() const { return xyz[0]; }
    Handle handleValue() const { return static_cast<Handle>(integer); }
    KcGePoint3d pointValue() const { return {xyz[0], xyz[1], xyz[2]}; }
    bool isPoint() const { return kind == TagKind::Point2 || kind == TagKind::Point3; }

    bool operator==(const Tag& other) const;
};

}  // namespace korva::db
