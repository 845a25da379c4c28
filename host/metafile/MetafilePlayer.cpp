// Playing metafile records into a picture. Points read from a record are
// checked against the record's length first, so counts in damaged records
// never drive a read or an allocation beyond the record.
#include "metafile/MetafilePlayer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "metafile/MetafileFormat.h"

namespace korva::metafile {

namespace {

constexpr size_t kObjectTableLimit = 0xFFFF;

// Functions of records that make a graphics object: each takes a slot of the
// object table, whether this reader uses the object or not.
bool createsObject(uint16_t function) {
    switch (function) {
        case 0x00F7:  // CREATEPALETTE
        case 0x01F9:  // CREATEPATTERNBRUSH
        case 0x0142:  // DIBCREATEPATTERNBRUSH
        case 0x02FB:  // CREATEFONTINDIRECT
        case 0x06FF:  // CREATEREGION
            return true;
        default:
            return false;
    }
}

ColorRef readColor(ByteSource& source) {
    ColorRef color;
    color.red = source.u8();
    color.green = source.u8();
    color.blue = source.u8();
    source.u8();  // reserved
    return color;
}

LogicalPoint readPointXY(ByteSource& source) {
    const double x = source.i16();
    const double y = source.i16();
    return {x, y};
}

LogicalPoint readPointYX(ByteSource& source) {
    const double y = source.i16();
    const double x = source.i16();
    return {x, y};
}

std::string tooShort(size_t needed, size_t available) {
    return "its parameters need " + std::to_string(needed) + " bytes, it has " + std::to_string(available);
}

// The angle of a point seen from the centre of an ellipse, as the parameter t
// of x = cx + rx cos t, y = cy - ry sin t (y grows down in logical units, so t
// grows counter-clockwise as the picture is seen).
double ellipseParameter(const LogicalPoint& point, const LogicalPoint& center, double rx, double ry) {
    return std::atan2(-(point.y - center.y) / ry, (point.x - center.x) / rx);
}

}  // namespace

int MetafilePlayer::ellipseSegments(double radius) {
    // About a quarter of a logical unit from the true curve, within a total budget.
    const double tolerance = 0.25;
    int wanted = 16;
    if (radius > tolerance) {
        wanted = static_cast<int>(std::ceil(std::numbers::pi / std::acos(1.0 - tolerance / radius)));
    }
    wanted = std::clamp(wanted, 16, 1024);
    if (static_cast<size_t>(wanted) > curvePointBudget_) wanted = 16;
    curvePointBudget_ -= std::min(curvePointBudget_, static_cast<size_t>(wanted));
    return wanted;
}

void MetafilePlayer::addShape(ShapeKind kind, std::vector<std::vector<LogicalPoint>> contours,
                              RecordFunction function) {
    PictureShape shape;
    shape.kind = kind;
    shape.contours = std::move(contours);
    shape.pen = pen_;
    if (kind == ShapeKind::Polygon) shape.brush = brush_;
    shape.source = function;
    picture_.shapes.push_back(std::move(shape));
}

std::string MetafilePlayer::createObject(GraphicsObject object) {
    auto free = std::find_if(objects_.begin(), objects_.end(), [](const auto& slot) { return !slot.has_value(); });
    if (free != objects_.end()) {
        *free = object;
        return {};
    }
    if (objects_.size() >= kObjectTableLimit) return "the object table is full (65535 objects)";
    objects_.push_back(object);
    return {};
}

void MetafilePlayer::selectObject(uint16_t index) {
    if (index >= objects_.size() || !objects_[index]) return;  // an empty slot selects nothing
    const GraphicsObject& object = *objects_[index];
    if (object.kind == GraphicsObject::Kind::Pen) pen_ = object.color;
    if (object.kind == GraphicsObject::Kind::Brush) brush_ = object.color;
}

std::string MetafilePlayer::polyline(ByteSource& parameters, ShapeKind kind, RecordFunction function) {
    const int16_t count = parameters.i16();
    if (parameters.overrun()) return tooShort(2, 0);
    if (count < 0) return "it gives a negative number of points (" + std::to_string(count) + ")";
    const size_t needed = static_cast<size_t>(count) * 4;
    if (needed > parameters.remaining()) return std::to_string(count) + " points: " + tooShort(needed + 2, parameters.remaining() + 2);
    std::vector<LogicalPoint> points;
    points.reserve(static_cast<size_t>(count));
    for (int16_t i = 0; i < count; ++i) points.push_back(readPointXY(parameters));
    if (!points.empty()) addShape(kind, {std::move(points)}, function);
    return {};
}

std::string MetafilePlayer::polyPolygon(ByteSource& parameters) {
    const uint16_t polygons = parameters.u16();
    if (parameters.overrun()) return tooShort(2, 0);
    if (static_cast<size_t>(polygons) * 2 > parameters.remaining()) {
        return std::to_string(polygons) + " polygons: " + tooShort(2 + polygons * 2, parameters.remaining() + 2);
    }
    std::vector<uint16_t> counts(polygons);
    size_t total = 0;
    for (uint16_t& count : counts) {
        count = parameters.u16();
        total += count;
    }
    if (total * 4 > parameters.remaining()) {
        return std::to_string(total) + " points in " + std::to_string(polygons) + " polygons: " +
               tooShort(2 + polygons * 2 + total * 4, 2 + polygons * 2 + parameters.remaining());
    }
    std::vector<std::vector<LogicalPoint>> contours;
    contours.reserve(polygons);
    for (uint16_t count : counts) {
        std::vector<LogicalPoint> points;
        points.reserve(count);
        for (uint16_t i = 0; i < count; ++i) points.push_back(readPointXY(parameters));
        if (!points.empty()) contours.push_back(std::move(points));
    }
    if (!contours.empty()) addShape(ShapeKind::Polygon, std::move(contours), RecordFunction::PolyPolygon);
    return {};
}

// RECTANGLE and ELLIPSE give a box (bottom, right, top, left); ARC, PIE and
// CHORD add the radial end and start points before it (y, x each).
std::string MetafilePlayer::curve(ByteSource& parameters, RecordFunction function) {
    const bool radial = function == RecordFunction::Arc || function == RecordFunction::Pie || function == RecordFunction::Chord;
    const size_t needed = radial ? 16 : 8;
    if (parameters.remaining() < needed) return tooShort(needed, parameters.remaining());
    LogicalPoint end, start;
    if (radial) {
        end = readPointYX(parameters);
        start = readPointYX(parameters);
    }
    const double bottom = parameters.i16(), right = parameters.i16(), top = parameters.i16(), left = parameters.i16();
    if (function == RecordFunction::Rectangle) {
        addShape(ShapeKind::Polygon, {{{left, top}, {right, top}, {right, bottom}, {left, bottom}}}, function);
        return {};
    }
    const LogicalPoint center{(left + right) / 2.0, (top + bottom) / 2.0};
    const double rx = std::abs(right - left) / 2.0, ry = std::abs(bottom - top) / 2.0;
    if (rx <= 0.0 || ry <= 0.0) return {};  // nothing to draw in an empty box
    const int segments = ellipseSegments(std::max(rx, ry));
    double from = 0.0, sweep = 2.0 * std::numbers::pi;
    if (radial) {
        from = ellipseParameter(start, center, rx, ry);
        sweep = ellipseParameter(end, center, rx, ry) - from;
        while (sweep <= 0.0) sweep += 2.0 * std::numbers::pi;  // equal radials: the whole ellipse
    }
    const int steps = std::max(2, static_cast<int>(std::ceil(segments * sweep / (2.0 * std::numbers::pi))));
    std::vector<LogicalPoint> points;
    points.reserve(static_cast<size_t>(steps) + 2);
    const bool closedCurve = !radial;
    for (int i = 0; i < (closedCurve ? steps : steps + 1); ++i) {
        const double t = from + sweep * i / steps;
        points.push_back({center.x + rx * std::cos(t), center.y - ry * std::sin(t)});
    }
    if (function == RecordFunction::Arc) {
        addShape(ShapeKind::Polyline, {std::move(points)}, function);
        return {};
    }
    if (function == RecordFunction::Pie) points.push_back(center);
    addShape(ShapeKind::Polygon, {std::move(points)}, function);
    return {};
}

std::string MetafilePlayer::play(uint16_t function, ByteSource& parameters) {
    switch (static_cast<RecordFunction>(function)) {
        case RecordFunction::SetMapMode:
            picture_.mapMode = static_cast<MapMode>(parameters.u16());
            break;
        case RecordFunction::SetWindowOrg: {
            const LogicalPoint p = readPointYX(parameters);
            picture_.windowOrigin = PointS{static_cast<int16_t>(p.x), static_cast<int16_t>(p.y)};
            break;
        }
        case RecordFunction::SetWindowExt: {
            const LogicalPoint p = readPointYX(parameters);
            picture_.windowExtent = PointS{static_cast<int16_t>(p.x), static_cast<int16_t>(p.y)};
            break;
        }
        case RecordFunction::SetPolyFillMode:
            parameters.u16();  // shapes become outlines: the fill rule does not matter
            break;
        case RecordFunction::CreatePenIndirect: {
            const uint16_t style = parameters.u16();
            parameters.i16();  // width: outlines have none
            parameters.i16();
            const ColorRef color = readColor(parameters);
            if (parameters.overrun()) return tooShort(10, parameters.size());
            GraphicsObject pen{GraphicsObject::Kind::Pen, color};
            if ((style & kPenStyleMask) == kPenNull) pen.color.reset();
            return createObject(pen);
        }
        case RecordFunction::CreateBrushIndirect: {
            const uint16_t style = parameters.u16();
            const ColorRef color = readColor(parameters);
            parameters.u16();  // hatch
            if (parameters.overrun()) return tooShort(8, parameters.size());
            GraphicsObject brush{GraphicsObject::Kind::Brush, color};
            if (style == kBrushNull) brush.color.reset();
            return createObject(brush);
        }
        case RecordFunction::SelectObject:
            selectObject(parameters.u16());
            break;
        case RecordFunction::DeleteObject: {
            const uint16_t index = parameters.u16();
            if (!parameters.overrun() && index < objects_.size()) objects_[index].reset();
            break;
        }
        case RecordFunction::Polyline: return polyline(parameters, ShapeKind::Polyline, RecordFunction::Polyline);
        case RecordFunction::Polygon: return polyline(parameters, ShapeKind::Polygon, RecordFunction::Polygon);
        case RecordFunction::PolyPolygon: return polyPolygon(parameters);
        case RecordFunction::MoveTo:
            position_ = readPointYX(parameters);
            break;
        case RecordFunction::LineTo: {
            const LogicalPoint to = readPointYX(parameters);
            if (parameters.overrun()) return tooShort(4, parameters.size());
            addShape(ShapeKind::Line, {{position_, to}}, RecordFunction::LineTo);
            position_ = to;
            break;
        }
        case RecordFunction::SetPixel: {
            const ColorRef color = readColor(parameters);
            const LogicalPoint at = readPointYX(parameters);
            if (parameters.overrun()) return tooShort(8, parameters.size());
            PictureShape pixel;
            pixel.kind = ShapeKind::Pixel;
            pixel.contours = {{at}};
            pixel.pen = color;
            pixel.source = RecordFunction::SetPixel;
            picture_.shapes.push_back(std::move(pixel));
            break;
        }
        case RecordFunction::Rectangle:
        case RecordFunction::Ellipse:
        case RecordFunction::Arc:
        case RecordFunction::Pie:
        case RecordFunction::Chord:
            return curve(parameters, static_cast<RecordFunction>(function));
        case RecordFunction::Escape: {
            const uint16_t escape = parameters.u16();
            const uint16_t count = parameters.u16();
            if (parameters.overrun()) return tooShort(4, parameters.size());
            if (count > parameters.remaining()) {
                return "its escape data of " + std::to_string(count) + " bytes: " + tooShort(4 + count, 4 + parameters.remaining());
            }
            const auto data = parameters.bytes(count);
            if (escape == kEscapeComment) picture_.comments.emplace_back(data.begin(), data.end());
            else ++picture_.skippedRecords;
            break;
        }
        default:
            ++picture_.skippedRecords;
            if (createsObject(function)) return createObject({});
            break;
    }
    if (parameters.overrun()) return "its parameters (" + std::to_string(parameters.size()) + " bytes) are shorter than its fields";
    return {};
}

}  // namespace korva::metafile
