// MetafilePicture: what the reader understood of a metafile, in its logical
// coordinates: the shapes drawn (with the pen and brush selected when each was
// drawn), the mapping records (map mode, window origin and extent, as last
// set), the placeable header and the comment escapes. Records the reader does
// not play are counted, not kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "metafile/MetafileFormat.h"

namespace korva::metafile {

// Logical coordinates: integers as written, fractions where the reader
// flattened an ellipse or arc.
struct LogicalPoint {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const LogicalPoint&) const = default;
};

enum class ShapeKind {
    Polyline,  // POLYLINE, ARC: one open contour
    Polygon,   // POLYGON, POLYPOLYGON, RECTANGLE, ELLIPSE, PIE, CHORD: closed contours (not repeating the first point)
    Line,      // LINETO: two points, from the current position
    Pixel,     // SETPIXEL: one point
};

struct PictureShape {
    ShapeKind kind = ShapeKind::Polyline;
    std::vector<std::vector<LogicalPoint>> contours;
    std::optional<ColorRef> pen;    // nothing for the null pen
    std::optional<ColorRef> brush;  // polygons only: nothing for the null (hollow) brush
    RecordFunction source = RecordFunction::Polyline;
};

struct MetafilePicture {
    std::optional<PlaceableHeader> placeable;
    MapMode mapMode = MapMode::Text;  // the last SETMAPMODE (Text when none)
    std::optional<PointS> windowOrigin;
    std::optional<PointS> windowExtent;
    std::vector<std::vector<uint8_t>> comments;  // data of the comment escapes, in order
    std::vector<PictureShape> shapes;
    size_t recordCount = 0;    // records read, META_EOF included
    size_t skippedRecords = 0; // records read but not played
};

}  // namespace korva::metafile
