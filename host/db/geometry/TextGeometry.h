// Geometry of texts: the box of a TEXT, ATTRIB or ATTDEF around its insertion
// point (measured by the database's text measurer, with the style's font), the
// frame of an MTEXT and its box (MTextLayout.h lays out its lines).
#pragma once

#include <array>

#include "db/ObjectRecord.h"
#include "db/TextMetrics.h"
#include "kcge.h"

namespace korva::db::geometry {

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

// The world corners of the MTEXT's box: its actual width and height as laid
// out, placed at the location by the attachment point and turned by the direction.
std::array<KcGePoint3d, 4> mtextCorners(const ObjectRecord& mtext);

}  // namespace korva::db::geometry
