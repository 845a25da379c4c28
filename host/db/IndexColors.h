// The standard 256-colour index palette of drawings: colour numbers 1-255 of
// layers and entities as RGB, for the colour dialog and for rendering. Colours
// 1-9 are the standard colours, 10-249 a grid of 24 hues in ten shades each, and
// 250-255 a ramp of greys. 0 (BYBLOCK) and 256 (BYLAYER) are not colours.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace korva::db {

constexpr int kColorByBlock = 0;
constexpr int kColorByLayer = 256;

struct Rgb {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    bool operator==(const Rgb&) const = default;
};

// Colour numbers 1-255 (0 is black as in the palette's slot 0); anything else black.
Rgb rgbOfIndexColor(int index);
// The same packed as 0x00BBGGRR (the order of the SDK's kcedGetRGB).
uint32_t packedRgbOfIndexColor(int index);
bool isIndexColor(int index);  // 1-255

// "red" ... "white" for 1-7, "ByBlock" for 0, "ByLayer" for 256; empty for the others.
std::wstring_view nameOfIndexColor(int index);
// A colour typed as a number (0-256) or a name (the seven names, BYLAYER, BYBLOCK;
// any case); nothing when the text is neither.
std::optional<int> parseIndexColor(std::wstring_view text);

}  // namespace korva::db
