// Classification of HATCH tags: a small state machine over the paths, edges,
// pattern and seeds. The group that opens each part drives the walk: 91 the
// paths, 92 a path, 72 an edge, 97 a path's source objects, 75 the pattern and 98
// the seed points.
#include "db/geometry/HatchLayout.h"

namespace korva::db::geometry {

namespace {

class HatchWalker {
public:
    explicit HatchWalker(const EntityTags& tags) : t_(tags) { layout_.roles.assign(tags.size(), HatchRole::None); }

    HatchLayout run() {
        for (size_t i = 0; i < t_.extendedDataStart(); ++i) {
            if (t_.isData(i)) visit(i);
        }
        closePiece(t_.extendedDataStart());
        return std::move(layout_);
    }

private:
    enum class Phase { Header, Paths, Pattern, Seeds };

    int nextDataCode(size_t i) const {
        for (size_t j = i + 1; j < t_.extendedDataStart(); ++j) {
            if (t_.isData(j)) return t_.tags[j].code;
        }
        return -1;
    }

    void openPiece(HatchPiece::Kind kind, size_t at) {
        closePiece(at);
        layout_.pieces.push_back({kind, at + 1, at + 1});
        open_ = true;
    }

    void closePiece(size_t at) {
        if (open_) layout_.pieces.back().end = at;
        open_ = false;
    }

    void visit(size_t i) {
        const Tag& tag = t_.tags[i];
        const int code = tag.code;
        if ((phase_ == Phase::Header || phase_ == Phase::Paths) && code == 75) {
            closePiece(i);
            phase_ = Phase::Pattern;
        }
        switch (phase_) {
            case Phase::Header:
                if (code == 10) role(i, HatchRole::Elevation);
                if (code == 91) phase_ = Phase::Paths;
                break;
            case Phase::Paths: visitPath(i, tag); break;
            case Phase::Pattern: visitPattern(i, code); break;
            case Phase::Seeds:
                if (code == 10) role(i, HatchRole::Seed);
                break;
        }
    }

    void visitPath(size_t i, const Tag& tag) {
        const int code = tag.code;
        if (code == 92) {
            closePiece(i);
            polylinePath_ = (tag.integer & 2) != 0;
            if (polylinePath_) openPiece(HatchPiece::PolylinePath, i);
            sourceObjects_ = false;
            return;
        }
        if (code == 97 && !fitCountHere(i)) {
            closePiece(i);
            sourceObjects_ = true;
            return;
        }
        if (sourceObjects_) return;
        if (polylinePath_) {
            if (code == 10) role(i, HatchRole::PolylineVertex);
            else if (code == 42) role(i, HatchRole::Bulge);
            else if (code == 73 && open_) layout_.pieces.back().closed = tag.integer != 0;
            return;
        }
        if (code == 72) {
            switch (tag.integer) {
                case 1: openPiece(HatchPiece::LineEdge, i); break;
                case 2: openPiece(HatchPiece::ArcEdge, i); break;
                case 3: openPiece(HatchPiece::EllipseEdge, i); break;
                default: openPiece(HatchPiece::SplineEdge, i); break;
            }
            return;
        }
        if (!open_) return;
        switch (layout_.pieces.back().kind) {
            case HatchPiece::LineEdge:
                if (code == 10 || code == 11) role(i, HatchRole::EdgePoint);
                break;
            case HatchPiece::ArcEdge:
            case HatchPiece::EllipseEdge: {
                const bool ellipse = layout_.pieces.back().kind == HatchPiece::EllipseEdge;
                if (code == 10) role(i, HatchRole::EdgePoint);
                else if (code == 11 && ellipse) role(i, HatchRole::EllipseMajor);
                else if (code == 40 && !ellipse) role(i, HatchRole::ArcRadius);
                else if (code == 50) role(i, HatchRole::EdgeStartAngle);
                else if (code == 51) role(i, HatchRole::EdgeEndAngle);
                else if (code == 73) role(i, HatchRole::EdgeCounterClockwise);
                break;
            }
            case HatchPiece::SplineEdge:
                if (code == 10) role(i, HatchRole::SplineControl);
                else if (code == 11) role(i, HatchRole::SplineFit);
                else if (code == 12 || code == 13) role(i, HatchRole::SplineTangent);
                break;
            default: break;
        }
    }

    // A 97 inside a spline edge counts its fit points (newer files); otherwise it
    // counts the path's source objects.
    bool fitCountHere(size_t i) const {
        if (!open_ || layout_.pieces.back().kind != HatchPiece::SplineEdge) return false;
        const int next = nextDataCode(i);
        return next == 11 || next == 12 || next == 13 || next == 97;
    }

    void visitPattern(size_t i, int code) {
        switch (code) {
            case 52: role(i, HatchRole::PatternAngle); break;
            case 41: role(i, HatchRole::PatternScale); break;
            case 53: role(i, HatchRole::LineAngle); break;
            case 43: role(i, HatchRole::LineBaseX); break;
            case 45: role(i, HatchRole::LineOffsetX); break;
            case 49: role(i, HatchRole::LineDash); break;
            case 98: phase_ = Phase::Seeds; break;
            default: break;
        }
    }

    void role(size_t i, HatchRole r) { layout_.roles[i] = r; }

    const EntityTags& t_;
    HatchLayout layout_;
    Phase phase_ = Phase::Header;
    bool polylinePath_ = false;
    bool sourceObjects_ = false;
    bool open_ = false;
};

}  // namespace

HatchLayout layoutHatch(const EntityTags& tags) { return HatchWalker(tags).run(); }

}  // namespace korva::db::geometry
