// Leaders and multilines. A LEADER joins its vertices (10, world) and, when its
// arrowhead flag (71) is set, ends at the first vertex in a closed filled arrow
// as long as DIMASZ times DIMSCALE (the leader's overrides, else its dimension
// style). An MLINE draws each element of its style as the line through the
// vertices (11) moved along their miter directions (13) by the element's first
// parameter (41 after each 74).
#include <cmath>

#include "db/entities/DimStyleOverrides.h"
#include "db/geometry/EntityTags.h"
#include "render/EntityPainters.h"

namespace korva::render {

namespace {

using db::geometry::EntityTags;

constexpr std::string_view kLeaderMarker = "AcDbLeader";
constexpr int kDimscale = 40;
constexpr int kDimasz = 41;

std::vector<KcGePoint3d> pointsOf(const EntityTags& t, int code) {
    std::vector<KcGePoint3d> points;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (t.isData(i) && t.tags[i].code == code && t.tags[i].isPoint()) points.push_back(t.tags[i].pointValue());
    }
    return points;
}

void drawLeader(const DrawItem& item) {
    const EntityTags t(item.entity);
    const std::vector<KcGePoint3d> vertices = pointsOf(t, 10);
    if (vertices.size() < 2) return;
    QPolygonF line;
    for (const KcGePoint3d& v : vertices) line << item.placement.picture(v);
    item.canvas.strokePolyline(line, item.pen());
    if (t.integer(71, 1) == 0) return;
    double scale = db::dimVariable(item.entity, kLeaderMarker, kDimscale, 1.0);
    if (!(scale > 0.0)) scale = 1.0;
    const double size = db::dimVariable(item.entity, kLeaderMarker, kDimasz, 2.5) * scale;
    const KcGeVector3d back = vertices[1] - vertices[0];
    if (!(size > 0.0) || !std::isfinite(size) || back.isZeroLength()) return;
    // A closed filled arrow: its tip on the first vertex, a third as wide as long.
    const KcGeVector3d along = back.normal() * size;
    const KcGeVector3d side = t.normal().normal().crossProduct(along) / 6.0;
    const KcGePoint3d base = vertices[0] + along;
    QPolygonF arrow;
    arrow << item.placement.picture(vertices[0]) << item.placement.picture(base + side)
          << item.placement.picture(base - side);
    item.canvas.fillPolygon(arrow, item.style.color);
}

struct MLineVertex {
    KcGePoint3d point;
    KcGeVector3d miter;
    std::vector<double> offsets;  // the first parameter of each element
};

void drawMLine(const DrawItem& item) {
    const EntityTags t(item.entity);
    std::vector<MLineVertex> vertices;
    bool elementOpen = false;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (!t.isData(i)) continue;
        const db::Tag& tag = t.tags[i];
        if (tag.code == 11 && tag.isPoint()) {
            vertices.push_back({tag.pointValue(), {}, {}});
        } else if (vertices.empty()) {
            continue;
        } else if (tag.code == 13 && tag.isPoint()) {
            vertices.back().miter = tag.pointValue().asVector();
        } else if (tag.code == 74) {
            elementOpen = true;
        } else if (tag.code == 41 && elementOpen) {
            vertices.back().offsets.push_back(tag.realValue());
            elementOpen = false;
        }
    }
    if (vertices.size() < 2) return;
    const size_t elements = vertices.front().offsets.size();
    const bool closed = (t.integer(71, 0) & 2) != 0;
    const Pen pen = item.pen();
    for (size_t e = 0; e < elements; ++e) {
        QPolygonF line;
        for (const MLineVertex& v : vertices) {
            const double offset = e < v.offsets.size() ? v.offsets[e] : 0.0;
            line << item.placement.picture(v.point + v.miter * offset);
        }
        if (closed) line << line.front();
        item.canvas.strokePolyline(line, pen);
    }
}

}  // namespace

bool drawLinearEntity(const DrawItem& item) {
    switch (item.entity.type) {
        case db::Type::Leader: drawLeader(item); return true;
        case db::Type::MLine: drawMLine(item); return true;
        default: return false;
    }
}

}  // namespace korva::render
