// Extents of hatches (their boundaries), images and wipeouts (the frame of the
// pixel grid), viewports (their paper-space rectangle), multilines and leaders
// (their vertices) and tolerances (the insertion point).
#include <cmath>

#include "db/geometry/EntityTags.h"
#include "db/geometry/ExtentsBuilder.h"
#include "db/geometry/HatchLayout.h"
#include "geom/Angles.h"
#include "geom/CurveMath.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

struct HatchPlane {
    KcGeVector3d normal;
    double elevation;
    KcGePoint3d world(const KcGePoint3d& p) const { return geom::ocsToWcs(KcGePoint3d(p.x, p.y, elevation), normal); }
};

// A hatch arc or ellipse edge as the counter-clockwise sweep it covers: a
// clockwise edge stores the complements of its angles.
void edgeSweep(double start, double end, bool counterClockwise, double& from, double& to) {
    if (counterClockwise) {
        from = start;
        to = end;
    } else {
        from = 360.0 - end;
        to = 360.0 - start;
    }
}

void addPolylinePath(const EntityTags& t, const HatchLayout& layout, const HatchPiece& piece, const HatchPlane& plane,
                     ExtentsBuilder& b) {
    std::vector<std::pair<KcGePoint3d, double>> vertices;
    for (size_t i = piece.begin; i < piece.end; ++i) {
        if (layout.roles[i] == HatchRole::PolylineVertex) {
            vertices.emplace_back(t.tags[i].pointValue(), 0.0);
        } else if (layout.roles[i] == HatchRole::Bulge && !vertices.empty()) {
            vertices.back().second = t.tags[i].realValue();
        }
    }
    for (size_t i = 0; i < vertices.size(); ++i) {
        b.point(plane.world(vertices[i].first));
        const double bulge = vertices[i].second;
        if (bulge == 0.0 || vertices.size() < 2) continue;
        const KcGePoint3d& next = vertices[(i + 1) % vertices.size()].first;
        const geom::BulgeArc arc = geom::bulgeToArc(vertices[i].first.convert2d(), next.convert2d(), bulge);
        if (!arc.isArc()) continue;
        const KcGePoint3d center(arc.center.x, arc.center.y, plane.elevation);
        if (arc.counterClockwise) b.ocsArc(center, arc.radius, arc.startAngle, arc.endAngle, plane.normal);
        else b.ocsArc(center, arc.radius, arc.endAngle, arc.startAngle, plane.normal);
    }
}

void addCurvedEdge(const EntityTags& t, const HatchLayout& layout, const HatchPiece& piece, const HatchPlane& plane,
                   ExtentsBuilder& b) {
    KcGePoint3d center;
    KcGeVector3d major(1, 0, 0);
    double radius = 0.0, ratio = 1.0, start = 0.0, end = 360.0;
    bool ccw = true;
    for (size_t i = piece.begin; i < piece.end; ++i) {
        const Tag& tag = t.tags[i];
        switch (layout.roles[i]) {
            case HatchRole::EdgePoint: center = tag.pointValue(); break;
            case HatchRole::EllipseMajor: major = tag.pointValue().asVector(); break;
            case HatchRole::ArcRadius: radius = tag.realValue(); break;
            case HatchRole::EdgeStartAngle: start = tag.realValue(); break;
            case HatchRole::EdgeEndAngle: end = tag.realValue(); break;
            case HatchRole::EdgeCounterClockwise: ccw = tag.integer != 0; break;
            default:
                if (tag.code == 40 && piece.kind == HatchPiece::EllipseEdge) ratio = tag.realValue();
                break;
        }
    }
    double from = 0.0, to = 0.0;
    edgeSweep(start, end, ccw, from, to);
    const geom::OcsAxes axes = geom::ocsAxes(plane.normal);
    const KcGePoint3d c = plane.world(center);
    if (piece.kind == HatchPiece::ArcEdge) {
        b.trigCurve(c, axes.x * radius, axes.y * radius, geom::degreesToRadians(from), geom::degreesToRadians(to));
        return;
    }
    const KcGeVector3d u = axes.x * major.x + axes.y * major.y;
    const KcGeVector3d v = plane.normal.normal().crossProduct(u) * ratio;
    b.trigCurve(c, u, v, geom::degreesToRadians(from), geom::degreesToRadians(to));
}

bool addHatch(const EntityTags& t, ExtentsBuilder& b) {
    const HatchLayout layout = layoutHatch(t);
    const HatchPlane plane{t.normal(), t.point(10).z};
    bool any = false;
    for (const HatchPiece& piece : layout.pieces) {
        any = true;
        if (piece.kind == HatchPiece::PolylinePath) {
            addPolylinePath(t, layout, piece, plane, b);
        } else if (piece.kind == HatchPiece::ArcEdge || piece.kind == HatchPiece::EllipseEdge) {
            addCurvedEdge(t, layout, piece, plane, b);
        } else {
            // Line ends, and the control or fit points of splines (which enclose the curve).
            for (size_t i = piece.begin; i < piece.end; ++i) {
                const HatchRole r = layout.roles[i];
                if (r == HatchRole::EdgePoint || r == HatchRole::SplineControl ||
                    (r == HatchRole::SplineFit && piece.kind == HatchPiece::SplineEdge)) {
                    b.point(plane.world(t.tags[i].pointValue()));
                }
            }
        }
    }
    return any;
}

bool addImage(const EntityTags& t, ExtentsBuilder& b) {
    const KcGePoint3d origin = t.point(10);
    const KcGePoint3d size = t.point(13, {1, 1, 0});
    const KcGeVector3d u = t.point(11, {1, 0, 0}).asVector() * size.x;
    const KcGeVector3d v = t.point(12, {0, 1, 0}).asVector() * size.y;
    for (const KcGePoint3d& p : {origin, origin + u, origin + v, origin + u + v}) b.point(p);
    return true;
}

bool addViewport(const EntityTags& t, ExtentsBuilder& b) {
    const KcGePoint3d c = t.point(10);
    const double halfWidth = t.real(40, 0.0) / 2.0, halfHeight = t.real(41, 0.0) / 2.0;
    b.point({c.x - halfWidth, c.y - halfHeight, c.z});
    b.point({c.x + halfWidth, c.y + halfHeight, c.z});
    return true;
}

bool addPointsOf(const EntityTags& t, std::initializer_list<int> codes, ExtentsBuilder& b) {
    bool any = false;
    for (size_t i = 0; i < t.extendedDataStart(); ++i) {
        if (!t.isData(i) || !t.tags[i].isPoint()) continue;
        for (int code : codes) {
            if (t.tags[i].code == code) {
                b.point(t.tags[i].pointValue());
                any = true;
            }
        }
    }
    return any;
}

}  // namespace

bool addOtherExtents(const ObjectRecord& entity, ExtentsBuilder& builder) {
    const EntityTags t(entity);
    switch (entity.type) {
        case Type::Hatch: return addHatch(t, builder);
        case Type::Image:
        case Type::Wipeout: return addImage(t, builder);
        case Type::Viewport: return addViewport(t, builder);
        case Type::MLine: return addPointsOf(t, {10, 11}, builder);
        case Type::Leader: return addPointsOf(t, {10}, builder);
        case Type::Tolerance: return addPointsOf(t, {10}, builder);
        default: return false;
    }
}

}  // namespace korva::db::geometry
