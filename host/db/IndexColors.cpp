// The index palette, built from its rule rather than typed out: the 24 hues of
// the grid are 15 degrees apart, and each channel of a hue is 0, 1/4, 1/2, 3/4
// or all of the shade's value. The five shades (full and pale) and the grey ramp
// are the palette's own numbers.
#include "db/IndexColors.h"

#include <algorithm>
#include <array>
#include <cwctype>
#include <string>

namespace korva::db {

namespace {

// Channel values of the five shades for the quarters 0..4 of a hue channel,
// saturated (even colour numbers) and pale (odd ones).
constexpr std::array<std::array<uint8_t, 5>, 5> kSaturated = {{
    {0, 63, 127, 191, 255},
    {0, 46, 94, 141, 189},
    {0, 31, 64, 96, 129},
    {0, 25, 52, 78, 104},
    {0, 19, 39, 59, 79},
}};
constexpr std::array<std::array<uint8_t, 5>, 5> kPale = {{
    {170, 191, 212, 234, 255},
    {126, 141, 157, 173, 189},
    {86, 96, 107, 118, 129},
    {69, 78, 86, 95, 104},
    {53, 59, 66, 73, 79},
}};

constexpr std::array<Rgb, 10> kStandard = {{
    {0, 0, 0},        // 0: the palette's slot for BYBLOCK
    {255, 0, 0},      // 1 red
    {255, 255, 0},    // 2 yellow
    {0, 255, 0},      // 3 green
    {0, 255, 255},    // 4 cyan
    {0, 0, 255},      // 5 blue
    {255, 0, 255},    // 6 magenta
    {255, 255, 255},  // 7 white (black on a white background)
    {65, 65, 65},     // 8
    {128, 128, 128},  // 9
}};

constexpr std::array<uint8_t, 6> kGreys = {51, 80, 105, 130, 190, 255};  // 250-255

constexpr std::array<std::wstring_view, 8> kNames = {L"ByBlock", L"red",  L"yellow",  L"green",
                                                     L"cyan",    L"blue", L"magenta", L"white"};

// How much of a channel a hue holds, in quarters: the red channel of hue angle
// `degrees` (full from 300 to 60 degrees, ramps of 60 degrees, none from 120 to 240).
int redQuarters(int degrees) {
    degrees = ((degrees % 360) + 360) % 360;
    if (degrees <= 60 || degrees >= 300) return 4;
    if (degrees < 120) return 4 - (degrees - 60) / 15;
    if (degrees <= 240) return 0;
    return (degrees - 240) / 15;
}

Rgb gridColor(int index) {
    const int hue = (index - 10) / 10 * 15;
    const int shade = (index - 10) % 10;
    const auto& channel = (shade % 2 == 0) ? kSaturated[shade / 2] : kPale[shade / 2];
    const auto value = [&](int offset) { return channel[static_cast<size_t>(redQuarters(hue - offset))]; };
    return {value(0), value(120), value(240)};
}

std::wstring lowered(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    return out;
}

}  // namespace

bool isIndexColor(int index) { return index >= 1 && index <= 255; }

Rgb rgbOfIndexColor(int index) {
    if (index >= 0 && index <= 9) return kStandard[static_cast<size_t>(index)];
    if (index >= 10 && index <= 249) return gridColor(index);
    if (index >= 250 && index <= 255) {
        const uint8_t grey = kGreys[static_cast<size_t>(index - 250)];
        return {grey, grey, grey};
    }
    return {};
}

uint32_t packedRgbOfIndexColor(int index) {
    const Rgb rgb = rgbOfIndexColor(index);
    return static_cast<uint32_t>(rgb.red) | static_cast<uint32_t>(rgb.green) << 8 | static_cast<uint32_t>(rgb.blue) << 16;
}

std::wstring_view nameOfIndexColor(int index) {
    if (index >= 0 && index <= 7) return kNames[static_cast<size_t>(index)];
    if (index == kColorByLayer) return L"ByLayer";
    return {};
}

std::optional<int> parseIndexColor(std::wstring_view text) {
    while (!text.empty() && std::iswspace(static_cast<wint_t>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::iswspace(static_cast<wint_t>(text.back()))) text.remove_suffix(1);
    if (text.empty()) return std::nullopt;
    const std::wstring name = lowered(text);
    if (name == L"bylayer") return kColorByLayer;
    if (name == L"byblock") return kColorByBlock;
    for (int i = 1; i <= 7; ++i) {
        if (name == lowered(kNames[static_cast<size_t>(i)])) return i;
    }
    // A whole number; large ones are kept large (out of range), never wrapped.
    std::wstring_view digits = text;
    const bool negative = digits.front() == L'-';
    if (negative || digits.front() == L'+') digits.remove_prefix(1);
    if (digits.empty()) return std::nullopt;
    long value = 0;
    for (wchar_t c : digits) {
        if (c < L'0' || c > L'9') return std::nullopt;
        value = std::min(value * 10 + (c - L'0'), 100000L);
    }
    return static_cast<int>(negative ? -value : value);
}

}  // namespace korva::db
