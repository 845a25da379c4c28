// Geometry of texts: the box of a TEXT, ATTRIB or ATTDEF around its insertion
// point (measured by the database's text measurer, with the style's font), the
// frame of an MTEXT and its box, and the plain lines of an MTEXT string with the
// inline format codes removed.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"
#include "db/TextMetrics.h"
#include "kcge.h"

namespace korva::db::geometry {

// The style metrics of a TEXT, ATTRIB, ATTDEF or MTEXT record: its own height,
// width factor and oblique angle, and the fonts of its text style.
TextStyleMetrics textMetricsOf(const ObjectRecord& text);

// The four world corners of a single-line text's box: measured around the
// insertion point (group 10, which is where the text really starts), mirrored by
// the generation flags, rotated and placed in the OCS. Empty text: the insertion point.
std::array<KcGePoint3d, 4> singleLineTextCorners(const ObjectRecord& text);

// The frame of an MTEXT: its location, unit direction and up vector, world.
struct MTextFrame {
    KcGePoint3d location;
    KcGeVector3d direction;
    KcGeVector3d up;
    KcGeVector3d normal;
};
MTextFrame mtextFrame(const ObjectRecord& mtext);

// Nominal line pitch of MTEXT lines, as a multiple of the text height.
inline constexpr double kMTextLinePitch = 5.0 / 3.0;

// The MTEXT's lines: the text split at paragraph breaks, format codes removed.
std::vector<std::string> mtextLines(const ObjectRecord& mtext);
std::vector<std::string> plainMTextLines(std::string_view content);

// The world corners of the MTEXT's box: width 42 (41 when 42 is 0, the widest line
// when both are 0), height 43 (else the line count times the line pitch times the
// text height), placed at the location by the attachment point.
std::array<KcGePoint3d, 4> mtextCorners(const ObjectRecord& mtext);

}  // namespace korva::db::geometry
