// The marker that opens a binary DXF file.
#pragma once

#include <string_view>

namespace korva::dxf {

// 22 bytes: a fixed product line, CR LF, SUB and NUL (spelled out by value).
inline constexpr char kBinarySentinelBytes[] = {
    0x41, 0x75, 0x74, 0x6F, 0x43, 0x41, 0x44, 0x20, 0x42, 0x69, 0x6E,
    0x61, 0x72, 0x79, 0x20, 0x44, 0x58, 0x46, 0x0D, 0x0A, 0x1A, 0x00};
inline constexpr std::string_view kBinarySentinel{kBinarySentinelBytes, sizeof kBinarySentinelBytes};

bool isBinaryDxf(std::string_view data);

}  // namespace korva::dxf
