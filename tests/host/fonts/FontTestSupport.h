// Shared by the font tests: drawings with text styles and texts built from DXF
// snippets on the real template, read by the real reader.
#pragma once

#include <string>
#include <string_view>

#include "../db/EntityTestSupport.h"
#include "FontExpectations.h"
#include "db/TextMetrics.h"

namespace korva::test {

// Flags of a style's "ACAD" extended data: the font's pitch and family (34) and bold/italic.
inline constexpr int64_t kRegularFlags = 34;
inline constexpr int64_t kItalicFlags = 0x1000000 | 34;
inline constexpr int64_t kBoldFlags = 0x2000000 | 34;
inline constexpr int64_t kBoldItalicFlags = 0x3000000 | 34;

// A STYLE record named `name` with a font file and, when `family` is not empty,
// the family and flags in its extended data.
inline std::string styleRecord(std::string_view handle, std::string_view name, std::string_view fontFile,
                               std::string_view family = {}, int64_t flags = kRegularFlags) {
    std::string record = dxfTags({{0, "STYLE"}, {5, handle}, {330, "3"}, {100, "AcDbSymbolTableRecord"},
                                  {100, "AcDbTextStyleTableRecord"}, {2, name}, {70, "0"}, {40, "0.0"},
                                  {41, "1.0"}, {50, "0.0"}, {71, "0"}, {42, "2.5"}, {3, fontFile}, {4, ""}});
    if (!family.empty()) record += dxfTags({{1001, "ACAD"}, {1000, family}, {1071, std::to_string(flags)}});
    return record;
}

struct TextSpec {
    std::string text;
    double height = 1.0;
    double widthFactor = 1.0;
    double obliqueDegrees = 0.0;
    int horizontal = 0;  // 72
    int vertical = 0;    // 73
    double rotationDegrees = 0.0;
};

// A TEXT with handle `handle` in the style `style`, inserted at (0, 0) and
// aligned at (10, 5) when justified.
inline std::string textEntity(std::string_view handle, std::string_view style, const TextSpec& sample) {
    std::string entity = modernHead("TEXT", handle, "AcDbText");
    entity += dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, std::to_string(sample.height)}, {1, sample.text},
                       {50, std::to_string(sample.rotationDegrees)}, {41, std::to_string(sample.widthFactor)},
                       {51, std::to_string(sample.obliqueDegrees)}, {7, style}, {72, std::to_string(sample.horizontal)},
                       {11, "10.0"}, {21, "5.0"}, {31, "0.0"}, {100, "AcDbText"},
                       {73, std::to_string(sample.vertical)}});
    return entity;
}

// An MTEXT at (0, 0) along the x axis in the template's Standard style.
inline std::string mtextEntity(std::string_view handle, std::string_view contents, double height,
                               double referenceWidth, int attachment = 1, double spacing = 1.0) {
    return modernHead("MTEXT", handle, "AcDbMText") +
           dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, std::to_string(height)},
                    {41, std::to_string(referenceWidth)}, {71, std::to_string(attachment)}, {72, "1"},
                    {1, contents}, {7, "Standard"}, {44, std::to_string(spacing)}});
}

}  // namespace korva::test
