// Value types of DXF group codes. The drawing database stores every tag in the
// form its group code calls for, so that numbers, handles and points are parsed
// once on load and written back from the same value.
#pragma once

#include <cstdint>

namespace korva::db {

enum class TagKind : uint8_t {
    String,  // text, also any value that did not parse as its code's type
    Real,
    Integer,
    Handle,  // hexadecimal object handle
    Point2,  // x and y of a 10/20 pair folded into one tag
    Point3,  // x, y and z of a 10/20/30 triple folded into one tag
    Binary,  // 310-319 and 1004 chunks, held as raw bytes
};

// The value kind a group code carries in a DXF file (points report Real for the
// x code; the reader folds the y and z codes into a point tag).
TagKind kindOfCode(int code);

// True for the x code of a coordinate triple (10-18, 110-112, 210, 1010-1013).
bool isPointCode(int code);

// True for codes whose values are object handles (5, 105, 320-369, 390-399, 480, 481, 1005).
bool isHandleCode(int code);

// True for soft or hard pointer codes that refer to another object (320-369, 390-399,
// 480, 481, 1005); false for the object's own handle (5, 105).
bool isReferenceCode(int code);

// Width in bytes of an integer code in binary DXF (1, 2, 4 or 8).
int binaryIntegerWidth(int code);

// True for codes whose binary DXF value is a one-byte boolean (290-299).
bool isBooleanCode(int code);

}  // namespace korva::db
