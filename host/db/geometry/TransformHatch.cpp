// Transformation of HATCH: boundary paths and edges, pattern lines and seed
// points, all in the hatch's OCS, through a PlaneMap. Arc and ellipse edges store
// a clockwise edge by the complements of its angles; a mirror in the plane flips
// every edge's direction. Arcs and bulges cannot take a non-uniform scale.
#include <cmath>

#include "db/geometry/EllipseMath.h"
#include "db/geometry/HatchLayout.h"
#include "db/geometry/PlaneMap.h"
#include "db/geometry/TransformSupport.h"
#include "geom/Angles.h"

namespace korva::db::geometry {

namespace {

using geom::degreesToRadians;

class HatchTransformer {
public:
    HatchTransformer(EntityTags& tags, const HatchLayout& layout, const PlaneMap& plane, double elevation)
        : t_(tags), layout_(layout), plane_(plane), elevation_(elevation) {}

    bool needsConformal() const {
        for (size_t i = 0; i < layout_.roles.size(); ++i) {
            const HatchRole r = layout_.roles[i];
            if (r == HatchRole::ArcRadius || (r == HatchRole::Bulge && t_.tags[i].realValue() != 0.0)) return true;
        }
        return false;
    }

    void run() {
        for (const HatchPiece& piece : layout_.pieces) {
            if (piece.kind == HatchPiece::ArcEdge || piece.kind == HatchPiece::EllipseEdge) curvedEdge(piece);
        }
        for (size_t i = 0; i < layout_.roles.size(); ++i) tag(i);
    }

private:
    KcGePoint3d mapPoint(const Tag& tag) const { return plane_.point({tag.xyz[0], tag.xyz[1], elevation_}); }
    KcGePoint3d mapVector(const Tag& tag) const {
        return KcGePoint3d::kOrigin + plane_.vector({tag.xyz[0], tag.xyz[1], 0.0});
    }

    void tag(size_t i) {
        Tag& tag = t_.tags[i];
        switch (layout_.roles[i]) {
            case HatchRole::Elevation: assignPoint(tag, {0.0, 0.0, plane_.point({0.0, 0.0, elevation_}).z}); break;
            case HatchRole::PolylineVertex:
            case HatchRole::SplineControl:
            case HatchRole::SplineFit:
            case HatchRole::Seed: assignPoint(tag, mapPoint(tag), true); break;
            case HatchRole::EdgePoint:
                if (!curvedCentre(i)) assignPoint(tag, mapPoint(tag), true);
                break;
            case HatchRole::SplineTangent: assignPoint(tag, mapVector(tag), true); break;
            case HatchRole::Bulge:
                if (plane_.mirrored()) tag.xyz[0] = -tag.xyz[0];
                break;
            case HatchRole::PatternScale:
            case HatchRole::LineDash: tag.xyz[0] *= plane_.scale(); break;
            case HatchRole::PatternAngle:
            case HatchRole::LineAngle: tag.xyz[0] = storedDegrees(plane_.angle(degreesToRadians(tag.xyz[0]))); break;
            case HatchRole::LineBaseX: pair(i, true); break;
            case HatchRole::LineOffsetX: pair(i, false); break;
            default: break;
        }
    }

    // Pattern line base points (43/44) are positions, offsets (45/46) are steps.
    void pair(size_t i, bool position) {
        if (i + 1 >= t_.size() || t_.tags[i + 1].kind != TagKind::Real) return;
        const KcGePoint3d p(t_.tags[i].realValue(), t_.tags[i + 1].realValue(), position ? elevation_ : 0.0);
        const KcGePoint3d mapped = position ? plane_.point(p) : KcGePoint3d::kOrigin + plane_.vector(p.asVector());
        t_.tags[i].xyz[0] = mapped.x;
        t_.tags[i + 1].xyz[0] = mapped.y;
    }

    bool curvedCentre(size_t i) const {
        for (size_t done : centres_) {
            if (done == i) return true;
        }
        return false;
    }

    // Arc and ellipse edges are rewritten whole: centre, size, angles and direction.
    void curvedEdge(const HatchPiece& piece) {
        size_t centre = piece.end, major = piece.end, start = piece.end, end = piece.end, ccw = piece.end,
               size = piece.end;
        for (size_t i = piece.begin; i < piece.end; ++i) {
            switch (layout_.roles[i]) {
                case HatchRole::EdgePoint: centre = i; break;
                case HatchRole::EllipseMajor: major = i; break;
                case HatchRole::ArcRadius: size = i; break;
                case HatchRole::EdgeStartAngle: start = i; break;
                case HatchRole::EdgeEndAngle: end = i; break;
                case HatchRole::EdgeCounterClockwise: ccw = i; break;
                default:
                    if (t_.tags[i].code == 40 && piece.kind == HatchPiece::EllipseEdge) size = i;
                    break;
            }
        }
        if (centre == piece.end || start == piece.end || end == piece.end || size == piece.end) return;
        const bool counterClockwise = ccw == piece.end || t_.tags[ccw].integer != 0;
        const double s = t_.tags[start].realValue(), e = t_.tags[end].realValue();
        double from = counterClockwise ? s : 360.0 - e, to = counterClockwise ? e : 360.0 - s;
        const bool closed = std::abs(to - from) >= 360.0 - 1e-9;
        const KcGePoint3d centreOcs = mapPoint(t_.tags[centre]);
        if (piece.kind == HatchPiece::ArcEdge) {
            t_.tags[size].xyz[0] *= plane_.scale();
            double a = plane_.angle(degreesToRadians(from)), b = plane_.angle(degreesToRadians(to));
            if (plane_.mirrored()) std::swap(a, b);
            from = storedDegrees(a);
            to = closed ? from + 360.0 : storedDegrees(b);
        } else {
            const KcGeVector3d majorOld(t_.tags[major].xyz[0], t_.tags[major].xyz[1], 0.0);
            const KcGeVector3d minorOld = KcGeVector3d::kZAxis.crossProduct(majorOld) * t_.tags[size].realValue();
            const EllipseArc arc = principalEllipse(centreOcs, plane_.vector(majorOld), plane_.vector(minorOld),
                                                    degreesToRadians(from), degreesToRadians(to), closed,
                                                    KcGeVector3d::kZAxis);
            assignPoint(t_.tags[major], KcGePoint3d::kOrigin + arc.majorAxis, true);
            t_.tags[size].xyz[0] = arc.ratio;
            from = closed ? geom::radiansToDegrees(arc.startParam) : storedDegrees(arc.startParam);
            to = closed ? from + 360.0 : storedDegrees(arc.endParam);
        }
        assignPoint(t_.tags[centre], centreOcs, true);
        centres_.push_back(centre);
        // A mirror in the plane reverses the boundary's direction.
        const bool newCounterClockwise = counterClockwise != plane_.mirrored();
        t_.tags[start].xyz[0] = newCounterClockwise ? from : 360.0 - to;
        t_.tags[end].xyz[0] = newCounterClockwise ? to : 360.0 - from;
        if (ccw != piece.end) t_.tags[ccw].integer = newCounterClockwise ? 1 : 0;
    }

    EntityTags& t_;
    const HatchLayout& layout_;
    const PlaneMap& plane_;
    double elevation_;
    std::vector<size_t> centres_;
};

}  // namespace

Kcad::ErrorStatus transformHatch(ObjectRecord& scratch, const KcGeMatrix3d& m) {
    EntityTags t(scratch);
    const HatchLayout layout = layoutHatch(t);
    const PlaneMap plane(m, t.normal());
    if (plane.degenerate()) return Kcad::eInvalidInput;
    HatchTransformer transformer(t, layout, plane, t.point(10).z);
    if (!plane.conformal() && transformer.needsConformal()) return Kcad::eCannotScaleNonUniformly;
    transformer.run();
    writeNormal(t, scratch, plane.newNormal());
    t.commit(scratch);
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
