// Outlines of texts for the metafile writer and the renderer: the same glyphs,
// positions and bars the measurer boxes (GlyphLayout.h), so every outline lies
// within its text box. Outlines are filled with the non-zero winding rule
// (TrueType contours overlap and nest by their turn; the bars of %%u, %%o and
// %%k take the glyphs' turn so that they unite with them).
//
// MTEXT: korva::db::geometry::layoutMText (db/geometry/MTextLayout.h) places an
// MTEXT's lines and runs (text, height, baseline origin in the MTEXT's frame)
// exactly as the database measures them; draw each run with textPath at its
// height, or take the whole of it from mtextPath.
#pragma once

#include <QPainterPath>

#include <array>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"
#include "db/TextMetrics.h"

namespace korva::fonts {

// A single-line text's outline in text coordinates: drawing units, y up,
// baseline at 0 from the insertion point, width factor and oblique applied (not
// the rotation, nor the backward and upside-down flags). Empty when nothing
// shows or no font can be used.
QPainterPath textPath(std::string_view text, const db::TextStyleMetrics& style);

using Contour = std::vector<std::array<double, 2>>;

// The same outline flattened into closed contours (the last point joins the
// first; it is not repeated), no point of a curve further than `tolerance` from
// the contour (tolerance <= 0: a thousandth of the height). Non-zero winding.
std::vector<Contour> textContours(std::string_view text, const db::TextStyleMetrics& style, double tolerance);

// Flattens any path the same way.
std::vector<Contour> flattenPath(const QPainterPath& path, double tolerance);

// An MTEXT's outline in its frame: x along its direction and y along its up
// vector, from its location. Non-zero winding.
QPainterPath mtextPath(const db::ObjectRecord& mtext);

}  // namespace korva::fonts
