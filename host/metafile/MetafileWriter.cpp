// Writing metafile records: each record is its size in words, its function and
// its parameters; points of POLYLINE, POLYGON and POLYPOLYGON are x then y,
// while the single-point records take y first, as the format lays them out.
#include "metafile/MetafileWriter.h"

#include <algorithm>

namespace korva::metafile {

namespace {

constexpr size_t kMaximumPointsPerRecord = 32767;

void writePoints(ByteSink& sink, std::span<const PointS> points) {
    for (const PointS& p : points) {
        sink.i16(p.x);
        sink.i16(p.y);
    }
}

void writeColor(ByteSink& sink, ColorRef color) {
    sink.u8(color.red);
    sink.u8(color.green);
    sink.u8(color.blue);
    sink.u8(0);
}

}  // namespace

size_t MetafileWriter::beginRecord(RecordFunction function) {
    const size_t start = records_.size();
    records_.u32(0);
    records_.u16(static_cast<uint16_t>(function));
    return start;
}

void MetafileWriter::endRecord(size_t start) {
    if ((records_.size() - start) % 2 != 0) records_.u8(0);  // records are whole words
    const auto words = static_cast<uint32_t>((records_.size() - start) / 2);
    records_.patchU32(start, words);
    largestRecordWords_ = std::max(largestRecordWords_, words);
}

void MetafileWriter::pointYX(PointS point) {
    records_.i16(point.y);
    records_.i16(point.x);
}

void MetafileWriter::setMapMode(MapMode mode) {
    const size_t start = beginRecord(RecordFunction::SetMapMode);
    records_.u16(static_cast<uint16_t>(mode));
    endRecord(start);
}

void MetafileWriter::setWindowOrg(PointS origin) {
    const size_t start = beginRecord(RecordFunction::SetWindowOrg);
    pointYX(origin);
    endRecord(start);
}

void MetafileWriter::setWindowExt(PointS extent) {
    const size_t start = beginRecord(RecordFunction::SetWindowExt);
    pointYX(extent);
    endRecord(start);
}

void MetafileWriter::setPolyFillMode(PolyFillMode mode) {
    const size_t start = beginRecord(RecordFunction::SetPolyFillMode);
    records_.u16(static_cast<uint16_t>(mode));
    endRecord(start);
}

uint16_t MetafileWriter::takeSlot() {
    const auto free = std::find(slots_.begin(), slots_.end(), false);
    const auto index = static_cast<uint16_t>(free - slots_.begin());
    if (free == slots_.end()) slots_.push_back(true);
    else *free = true;
    return index;
}

uint16_t MetafileWriter::createPen(uint16_t style, int16_t width, ColorRef color) {
    const size_t start = beginRecord(RecordFunction::CreatePenIndirect);
    records_.u16(style);
    records_.i16(width);  // PointS width: x is the width, y unused
    records_.i16(0);
    writeColor(records_, color);
    endRecord(start);
    return takeSlot();
}

uint16_t MetafileWriter::createBrush(uint16_t style, ColorRef color, uint16_t hatch) {
    const size_t start = beginRecord(RecordFunction::CreateBrushIndirect);
    records_.u16(style);
    writeColor(records_, color);
    records_.u16(hatch);
    endRecord(start);
    return takeSlot();
}

void MetafileWriter::selectObject(uint16_t index) {
    const size_t start = beginRecord(RecordFunction::SelectObject);
    records_.u16(index);
    endRecord(start);
}

void MetafileWriter::deleteObject(uint16_t index) {
    const size_t start = beginRecord(RecordFunction::DeleteObject);
    records_.u16(index);
    endRecord(start);
    if (index < slots_.size()) slots_[index] = false;
}

void MetafileWriter::polyline(std::span<const PointS> points) {
    while (points.size() >= 2) {
        const size_t count = std::min(points.size(), kMaximumPointsPerRecord);
        const size_t start = beginRecord(RecordFunction::Polyline);
        records_.i16(static_cast<int16_t>(count));
        writePoints(records_, points.first(count));
        endRecord(start);
        if (count == points.size()) break;
        points = points.subspan(count - 1);  // the next record starts where this one ended
    }
}

bool MetafileWriter::polygon(std::span<const PointS> points) {
    if (points.size() > kMaximumPointsPerRecord) return false;
    const size_t start = beginRecord(RecordFunction::Polygon);
    records_.i16(static_cast<int16_t>(points.size()));
    writePoints(records_, points);
    endRecord(start);
    return true;
}

bool MetafileWriter::polyPolygon(const std::vector<std::vector<PointS>>& polygons) {
    if (polygons.size() > 0xFFFF) return false;
    for (const auto& polygon : polygons) {
        if (polygon.size() > 0xFFFF) return false;
    }
    const size_t start = beginRecord(RecordFunction::PolyPolygon);
    records_.u16(static_cast<uint16_t>(polygons.size()));
    for (const auto& polygon : polygons) records_.u16(static_cast<uint16_t>(polygon.size()));
    for (const auto& polygon : polygons) writePoints(records_, polygon);
    endRecord(start);
    return true;
}

void MetafileWriter::moveTo(PointS point) {
    const size_t start = beginRecord(RecordFunction::MoveTo);
    pointYX(point);
    endRecord(start);
}

void MetafileWriter::lineTo(PointS point) {
    const size_t start = beginRecord(RecordFunction::LineTo);
    pointYX(point);
    endRecord(start);
}

void MetafileWriter::setPixel(PointS point, ColorRef color) {
    const size_t start = beginRecord(RecordFunction::SetPixel);
    writeColor(records_, color);
    pointYX(point);
    endRecord(start);
}

bool MetafileWriter::comment(std::span<const uint8_t> data) {
    if (data.size() > 0xFFFF) return false;
    const size_t start = beginRecord(RecordFunction::Escape);
    records_.u16(kEscapeComment);
    records_.u16(static_cast<uint16_t>(data.size()));
    records_.append(data);
    endRecord(start);
    return true;
}

std::vector<uint8_t> MetafileWriter::finish(const std::optional<PlaceableHeader>& placeable) const {
    ByteSink file;
    if (placeable) {
        file.u32(kPlaceableKey);
        file.u16(0);  // HWmf: 0 on disk
        file.i16(placeable->boundingBox.left);
        file.i16(placeable->boundingBox.top);
        file.i16(placeable->boundingBox.right);
        file.i16(placeable->boundingBox.bottom);
        file.u16(placeable->unitsPerInch);
        file.u32(0);  // reserved
        file.u16(placeableChecksum(*placeable));
    }
    const uint32_t eofWords = 3;
    const auto totalWords = static_cast<uint32_t>(kMetaHeaderWords + records_.size() / 2 + eofWords);
    file.u16(static_cast<uint16_t>(MetafileType::Disk));
    file.u16(kMetaHeaderWords);
    file.u16(kVersionWithDib);
    file.u32(totalWords);  // SizeLow, SizeHigh
    file.u16(static_cast<uint16_t>(slots_.size()));
    file.u32(largestRecordWords_);
    file.u16(0);  // NumberOfMembers: unused
    file.append(records_.bytes());
    file.u32(eofWords);
    file.u16(static_cast<uint16_t>(RecordFunction::Eof));
    return file.take();
}

}  // namespace korva::metafile
