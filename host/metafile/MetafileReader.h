// Reading a Windows Metafile: the placeable header (when present, with its key
// and checksum checked), the META_HEADER, and every record up to META_EOF.
// The reader plays what a drawing can hold: mapping records, pens and
// brushes in the object table, polylines, polygons, poly-polygons, MOVETO and
// LINETO, rectangles, ellipses, arcs, pies and chords (flattened), pixels and
// comment escapes; other records are skipped and counted. A damaged file
// (truncated, with sizes that do not add up, a wrong key or checksum) is
// refused with the reason; any sequence of bytes is safe to read.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "metafile/MetafilePicture.h"

namespace korva::metafile {

struct MetafileReadResult {
    MetafilePicture picture;
    std::string error;  // empty when the file was read; else why it was refused
    bool ok() const { return error.empty(); }
};

MetafileReadResult readMetafile(std::span<const uint8_t> bytes);

}  // namespace korva::metafile
