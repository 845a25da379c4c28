// The numbers of the Windows Metafile format ([MS-WMF], the public document):
// the placeable header's key, the record functions this codec writes or plays,
// the map modes, pen and brush styles, and the small fixed structures. A
// metafile is a sequence of little-endian 16-bit words: an optional 22-byte
// placeable header, the 18-byte META_HEADER, then records of
// (size in words: uint32, function: uint16, parameters), ended by META_EOF.
#pragma once

#include <cstdint>

namespace korva::metafile {

inline constexpr uint32_t kPlaceableKey = 0x9AC6CDD7;
inline constexpr size_t kPlaceableHeaderBytes = 22;
inline constexpr size_t kMetaHeaderBytes = 18;
inline constexpr uint16_t kMetaHeaderWords = 9;
inline constexpr uint16_t kVersionWithDib = 0x0300;
inline constexpr uint16_t kVersionWithoutDib = 0x0100;
inline constexpr size_t kRecordHeaderBytes = 6;  // size (2 words) and function (1 word)

// META_HEADER Type.
enum class MetafileType : uint16_t { Memory = 1, Disk = 2 };

// RecordType: the full 16-bit function values (the high byte is the parameter count).
enum class RecordFunction : uint16_t {
    Eof = 0x0000,
    SetBkMode = 0x0102,
    SetMapMode = 0x0103,
    SetPolyFillMode = 0x0106,
    SelectObject = 0x012D,
    DeleteObject = 0x01F0,
    SetWindowOrg = 0x020B,
    SetWindowExt = 0x020C,
    SetViewportOrg = 0x020D,
    SetViewportExt = 0x020E,
    LineTo = 0x0213,
    MoveTo = 0x0214,
    CreatePenIndirect = 0x02FA,
    CreateBrushIndirect = 0x02FC,
    Polygon = 0x0324,
    Polyline = 0x0325,
    Ellipse = 0x0418,
    Rectangle = 0x041B,
    SetPixel = 0x041F,
    PolyPolygon = 0x0538,
    Escape = 0x0626,
    Arc = 0x0817,
    Pie = 0x081A,
    Chord = 0x0830,
};

// MapMode. Text, the isotropic and the anisotropic modes have y growing down;
// the metric and English modes have y growing up.
enum class MapMode : uint16_t {
    Text = 1,
    LowMetric = 2,   // 0.1 mm
    HighMetric = 3,  // 0.01 mm
    LowEnglish = 4,  // 0.01 inch
    HighEnglish = 5, // 0.001 inch
    Twips = 6,       // 1/1440 inch
    Isotropic = 7,
    Anisotropic = 8,
};

enum class PolyFillMode : uint16_t { Alternate = 1, Winding = 2 };

// PenStyle (the low bits) and BrushStyle values used here.
inline constexpr uint16_t kPenSolid = 0x0000;
inline constexpr uint16_t kPenNull = 0x0005;
inline constexpr uint16_t kPenStyleMask = 0x000F;
inline constexpr uint16_t kBrushSolid = 0x0000;
inline constexpr uint16_t kBrushNull = 0x0001;
inline constexpr uint16_t kBrushHatched = 0x0002;

// MetafileEscapes: the comment escape carries private data.
inline constexpr uint16_t kEscapeComment = 0x000F;

struct PointS {
    int16_t x = 0;
    int16_t y = 0;
    bool operator==(const PointS&) const = default;
};

// A rectangle in logical units: left/top inclusive, right/bottom exclusive.
struct RectS {
    int16_t left = 0;
    int16_t top = 0;
    int16_t right = 0;
    int16_t bottom = 0;
    bool operator==(const RectS&) const = default;
};

// ColorRef: red, green, blue and a reserved byte, in that byte order.
struct ColorRef {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    bool operator==(const ColorRef&) const = default;
};

// The placeable header: where the picture goes and how large a logical unit is.
struct PlaceableHeader {
    RectS boundingBox;
    uint16_t unitsPerInch = 1440;
};

// The placeable header's checksum: the XOR of its first ten words (key, a zero
// handle, the box, the units per inch and the zero reserved words).
inline uint16_t placeableChecksum(const PlaceableHeader& header) {
    const uint16_t words[10] = {static_cast<uint16_t>(kPlaceableKey & 0xFFFF),
                                static_cast<uint16_t>(kPlaceableKey >> 16),
                                0,
                                static_cast<uint16_t>(header.boundingBox.left),
                                static_cast<uint16_t>(header.boundingBox.top),
                                static_cast<uint16_t>(header.boundingBox.right),
                                static_cast<uint16_t>(header.boundingBox.bottom),
                                header.unitsPerInch,
                                0,
                                0};
    uint16_t checksum = 0;
    for (uint16_t word : words) checksum ^= word;
    return checksum;
}

}  // namespace korva::metafile
