// The comment escape WMFOUT writes so that WMFIN can restore sizes exactly.
// Logical units are 16-bit integers, and the placeable header's units per inch
// an integer as well, so neither can carry the scale of a drawing: this
// comment carries it as doubles, with the display point of the view corner
// that the window origin stands for. Layout of the comment's data: the 16-byte
// signature "KORVA-WMF-SCALE" and a zero byte, a 16-bit version (1), then three
// little-endian IEEE doubles: logical units per drawing unit, corner x, corner y.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "metafile/MetafilePicture.h"

namespace korva::metafile {

struct ScaleComment {
    double unitsPerDrawingUnit = 1.0;  // k: logical units per drawing unit
    double cornerX = 0.0;              // the view's upper-left corner in display coordinates
    double cornerY = 0.0;
};

std::vector<uint8_t> encodeScaleComment(const ScaleComment& comment);
// Nothing when the data is not this comment, or holds a scale that is not a positive finite number.
std::optional<ScaleComment> decodeScaleComment(std::span<const uint8_t> data);
// The first such comment of a picture.
std::optional<ScaleComment> findScaleComment(const MetafilePicture& picture);

}  // namespace korva::metafile
