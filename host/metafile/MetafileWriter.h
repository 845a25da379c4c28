// MetafileWriter: builds a Windows Metafile record by record. Graphics objects
// (pens, brushes) take the lowest free slot of the object table, as a player
// numbers them; the META_HEADER's object count, largest record and size, and
// the placeable header's checksum are worked out when the file is finished.
//
//     MetafileWriter writer;
//     writer.setMapMode(MapMode::Anisotropic);
//     const uint16_t pen = writer.createPen(kPenSolid, 0, {255, 0, 0});
//     writer.selectObject(pen);
//     writer.polyline(points);
//     std::vector<uint8_t> file = writer.finish(placeable);
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "metafile/MetafileBytes.h"
#include "metafile/MetafileFormat.h"

namespace korva::metafile {

class MetafileWriter {
public:
    void setMapMode(MapMode mode);
    void setWindowOrg(PointS origin);
    void setWindowExt(PointS extent);
    void setPolyFillMode(PolyFillMode mode);

    // The object index of the new pen or brush.
    uint16_t createPen(uint16_t style, int16_t width, ColorRef color);
    uint16_t createBrush(uint16_t style, ColorRef color, uint16_t hatch = 0);
    void selectObject(uint16_t index);
    // Frees the slot for the next object created.
    void deleteObject(uint16_t index);

    // Records hold at most 32767 points (a signed count): longer polylines are
    // written as several records that share their joining points.
    void polyline(std::span<const PointS> points);
    // False (nothing written) when a polygon has more than 32767 points.
    bool polygon(std::span<const PointS> points);
    // One record filled as a whole (holes stay holes). False (nothing written)
    // beyond 65535 polygons or points per polygon.
    bool polyPolygon(const std::vector<std::vector<PointS>>& polygons);
    void moveTo(PointS point);
    void lineTo(PointS point);
    void setPixel(PointS point, ColorRef color);
    // META_ESCAPE with the comment function; at most 65535 bytes of data.
    bool comment(std::span<const uint8_t> data);

    // The whole file: the placeable header when given, META_HEADER, the records and META_EOF.
    std::vector<uint8_t> finish(const std::optional<PlaceableHeader>& placeable) const;

private:
    // Starts a record; its size is patched by endRecord.
    size_t beginRecord(RecordFunction function);
    void endRecord(size_t start);
    void pointYX(PointS point);  // the order of MOVETO, LINETO, SETWINDOWORG and SETWINDOWEXT
    uint16_t takeSlot();

    ByteSink records_;
    std::vector<bool> slots_;  // object table: true where an object lives
    uint32_t largestRecordWords_ = 3;  // META_EOF at least
};

}  // namespace korva::metafile
