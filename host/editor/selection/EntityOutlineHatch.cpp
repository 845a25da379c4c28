// The outline of a HATCH: its boundary paths, each joined into one closed
// chain, which together bound the filled region (even-odd, so islands are holes).
#include <cmath>

#include "db/geometry/EntityTags.h"
#include "db/geometry/HatchLayout.h"
#include "editor/selection/EntityOutline.h"
#include "geom/Angles.h"
#include "geom/CurveMath.h"
#include "geom/Ocs.h"

namespace korva::editor {

namespace {

using db::geometry::HatchPiece;
using db::geometry::HatchRole;

class HatchOutline {
public:
    HatchOutline(const db::geometry::EntityTags& t, ShapeBuilder& builder)
        : t_(t), layout_(db::geometry::layoutHatch(t)), builder_(builder), normal_(t.normal()), elevation_(t.point(10).z) {}

    void draw() {
        area_ = builder_.beginArea();
        for (const HatchPiece& piece : layout_.pieces) {
            switch (piece.kind) {
                case HatchPiece::PolylinePath: polylinePath(piece); break;
                case HatchPiece::LineEdge: lineEdge(piece); break;
                case HatchPiece::ArcEdge:
                case HatchPiece::EllipseEdge: curvedEdge(piece); break;
                case HatchPiece::SplineEdge: splineEdge(piece); break;
            }
        }
        closeChain();
    }

private:
    KcGePoint3d world(const KcGePoint3d& ocs) const { return geom::ocsToWcs(KcGePoint3d(ocs.x, ocs.y, elevation_), normal_); }

    // Edges of one path follow each other end to start; a gap starts the next path.
    void continueAt(const KcGePoint3d& start) {
        if (open_ && start.distanceTo(lastEnd_) > 1e-9 * std::max(1.0, start.asVector().length())) closeChain();
        if (!open_) {
            builder_.beginChain();
            open_ = true;
        }
    }
    void closeChain() {
        if (open_) builder_.endAreaChain(area_);
        open_ = false;
    }

    void polylinePath(const HatchPiece& piece) {
        closeChain();
        std::vector<std::pair<KcGePoint3d, double>> vertices;
        for (size_t i = piece.begin; i < piece.end; ++i) {
            if (layout_.roles[i] == HatchRole::PolylineVertex) vertices.emplace_back(t_.tags[i].pointValue(), 0.0);
            else if (layout_.roles[i] == HatchRole::Bulge && !vertices.empty()) vertices.back().second = t_.tags[i].realValue();
        }
        const geom::OcsAxes axes = geom::ocsAxes(normal_);
        builder_.beginChain();
        for (size_t i = 0; i < vertices.size(); ++i) {
            builder_.point(world(vertices[i].first));
            const double bulge = vertices[i].second;
            if (bulge == 0.0 || vertices.size() < 2) continue;
            const KcGePoint3d& next = vertices[(i + 1) % vertices.size()].first;
            const geom::BulgeArc arc = geom::bulgeToArc(vertices[i].first.convert2d(), next.convert2d(), bulge);
            if (!arc.isArc()) continue;
            double start = arc.startAngle, end = arc.endAngle;
            if (arc.counterClockwise) {
                while (end <= start) end += geom::kTwoPi;
            } else {
                while (end >= start) end -= geom::kTwoPi;
            }
            builder_.trigCurve(world({arc.center.x, arc.center.y, 0}), axes.x * arc.radius, axes.y * arc.radius, start, end);
        }
        builder_.endAreaChain(area_);
    }

    void lineEdge(const HatchPiece& piece) {
        std::vector<KcGePoint3d> points;
        for (size_t i = piece.begin; i < piece.end; ++i) {
            if (layout_.roles[i] == HatchRole::EdgePoint) points.push_back(world(t_.tags[i].pointValue()));
        }
        if (points.empty()) return;
        continueAt(points.front());
        for (const KcGePoint3d& p : points) builder_.point(p);
        lastEnd_ = points.back();
    }

    void curvedEdge(const HatchPiece& piece) {
        KcGePoint3d center;
        KcGeVector3d major(1, 0, 0);
        double radius = 0.0, ratio = 1.0, start = 0.0, end = 360.0;
        bool counterClockwise = true;
        for (size_t i = piece.begin; i < piece.end; ++i) {
            const db::Tag& tag = t_.tags[i];
            switch (layout_.roles[i]) {
                case HatchRole::EdgePoint: center = tag.pointValue(); break;
                case HatchRole::EllipseMajor: major = tag.pointValue().asVector(); break;
                case HatchRole::ArcRadius: radius = tag.realValue(); break;
                case HatchRole::EdgeStartAngle: start = tag.realValue(); break;
                case HatchRole::EdgeEndAngle: end = tag.realValue(); break;
                case HatchRole::EdgeCounterClockwise: counterClockwise = tag.integer != 0; break;
                default:
                    if (tag.code == 40 && piece.kind == HatchPiece::EllipseEdge) ratio = tag.realValue();
                    break;
            }
        }
        const geom::OcsAxes axes = geom::ocsAxes(normal_);
        KcGeVector3d u = axes.x * radius, v = axes.y * radius;
        if (piece.kind == HatchPiece::EllipseEdge) {
            u = axes.x * major.x + axes.y * major.y;
            v = normal_.normal().crossProduct(u) * ratio;
        }
        // A clockwise edge stores the complements of its angles and runs backwards.
        double from = geom::degreesToRadians(counterClockwise ? start : 360.0 - start);
        double to = geom::degreesToRadians(counterClockwise ? end : 360.0 - end);
        if (counterClockwise) {
            while (to <= from) to += geom::kTwoPi;
        } else {
            while (to >= from) to -= geom::kTwoPi;
        }
        const KcGePoint3d c = world(center);
        continueAt(c + u * std::cos(from) + v * std::sin(from));
        builder_.trigCurve(c, u, v, from, to);
        lastEnd_ = c + u * std::cos(to) + v * std::sin(to);
    }

    void splineEdge(const HatchPiece& piece) {
        std::vector<KcGePoint3d> control, fit;
        for (size_t i = piece.begin; i < piece.end; ++i) {
            if (layout_.roles[i] == HatchRole::SplineControl) control.push_back(world(t_.tags[i].pointValue()));
            else if (layout_.roles[i] == HatchRole::SplineFit) fit.push_back(world(t_.tags[i].pointValue()));
        }
        // The control polygon stands for the curve it encloses.
        const std::vector<KcGePoint3d>& points = control.empty() ? fit : control;
        if (points.empty()) return;
        continueAt(points.front());
        for (const KcGePoint3d& p : points) builder_.point(p);
        lastEnd_ = points.back();
    }

    const db::geometry::EntityTags& t_;
    db::geometry::HatchLayout layout_;
    ShapeBuilder& builder_;
    KcGeVector3d normal_;
    double elevation_;
    int area_ = -1;
    bool open_ = false;
    KcGePoint3d lastEnd_;
};

}  // namespace

bool drawHatchOutline(const db::ObjectRecord& entity, ShapeBuilder& builder) {
    if (entity.type != db::Type::Hatch) return false;
    const db::geometry::EntityTags t(entity);
    HatchOutline(t, builder).draw();
    return true;
}

}  // namespace korva::editor
