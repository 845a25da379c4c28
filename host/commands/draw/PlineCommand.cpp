// PLINE: an LWPOLYLINE in the XY plane of the current UCS, at the elevation of
// its start point. Line segments take points or a "Length" along the last
// direction; "Arc" switches to arc segments, which continue tangentially to
// an end point, or follow an included "Angle", a "CEnter", a start "Direction",
// a "Radius" or a "Second pt"; "Line" switches back. "Width" and "Halfwidth" set
// the widths of the next segment (its end width becomes the next start width),
// "Undo" takes back the last segment and "Close"/"CLose" closes the polyline.
// Enter, "Close" or a cancel makes the polyline from what was given.
#include <cmath>
#include <optional>
#include <vector>

#include "commands/draw/ArcGeometry.h"
#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "editor/SystemVariables.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

struct PlineVertex {
    KcGePoint2d point;
    double bulge = 0.0;  // of the segment that starts here
    double startWidth = 0.0;
    double endWidth = 0.0;
};

enum class Step { Continue, Finish, Cancel };

class PlineBuilder {
public:
    PlineBuilder(const UcsPlane& ucs, const kcad_point start, double width)
        : ucs_(ucs), elevation_(start[2]), startWidth_(width), endWidth_(width) {
        vertices_.push_back({{start[0], start[1]}, 0.0, width, width});
    }

    Step next() { return arcMode_ ? nextArc() : nextLine(); }
    void create() const;

private:
    const KcGePoint2d& last() const { return vertices_.back().point; }
    void base(kcad_point out) const {
        out[0] = last().x;
        out[1] = last().y;
        out[2] = elevation_;
    }
    KcGePoint2d planar(const kcad_point p) const { return {p[0], p[1]}; }
    size_t segments() const { return vertices_.size() - 1; }

    void addSegment(const KcGePoint2d& end, double bulge);
    void undo();
    Step closeWith(double bulge);
    bool promptWidths(bool half);
    Step nextLine();
    Step nextArc();
    std::optional<double> arcByAngle(KcGePoint2d& end);
    std::optional<double> arcByCenter(KcGePoint2d& end);
    std::optional<double> arcByRadius(KcGePoint2d& end);
    std::optional<double> arcByDirection(KcGePoint2d& end);
    std::optional<double> arcBySecondPoint(KcGePoint2d& end);
    std::optional<KcGePoint2d> chordEnd(double sweep, double radius);

    const UcsPlane& ucs_;
    double elevation_;
    std::vector<PlineVertex> vertices_;
    double startWidth_;
    double endWidth_;
    double direction_ = 0.0;  // where the last segment ends up heading (UCS angle)
    bool arcMode_ = false;
    bool closed_ = false;
};

void PlineBuilder::addSegment(const KcGePoint2d& end, double bulge) {
    PlineVertex& from = vertices_.back();
    from.bulge = bulge;
    from.startWidth = startWidth_;
    from.endWidth = endWidth_;
    if (!from.point.isEqualTo(end)) direction_ = endTangentAngle(from.point, end, bulge);
    startWidth_ = endWidth_;
    vertices_.push_back({end, 0.0, startWidth_, endWidth_});
}

void PlineBuilder::undo() {
    if (segments() == 0) {
        kcutPrintf(L"\nAll segments already undone.");
        return;
    }
    vertices_.pop_back();
    PlineVertex& open = vertices_.back();
    open.bulge = 0.0;
    startWidth_ = open.startWidth;
    endWidth_ = open.endWidth;
    direction_ = 0.0;
    if (segments() > 0) {
        const PlineVertex& before = vertices_[vertices_.size() - 2];
        direction_ = endTangentAngle(before.point, open.point, before.bulge);
    }
}

Step PlineBuilder::closeWith(double bulge) {
    PlineVertex& from = vertices_.back();
    from.bulge = bulge;
    from.startWidth = startWidth_;
    from.endWidth = endWidth_;
    closed_ = true;
    return Step::Finish;
}

bool PlineBuilder::promptWidths(bool half) {
    const double factor = half ? 2.0 : 1.0;
    const std::wstring what = half ? L"half-width" : L"width";
    kcad_point from;
    base(from);
    double start = startWidth_ / factor;
    kcedInitGet(RSG_NONEG, nullptr);
    int status = kcedGetDist(from, (L"\nSpecify starting " + what + L" <" + formatDistance(start) + L">: ").c_str(), &start);
    if (status != RTNORM && status != RTNONE) return false;
    double end = start;
    kcedInitGet(RSG_NONEG, nullptr);
    status = kcedGetDist(from, (L"\nSpecify ending " + what + L" <" + formatDistance(end) + L">: ").c_str(), &end);
    if (status != RTNORM && status != RTNONE) return false;
    startWidth_ = start * factor;
    endWidth_ = end * factor;
    return true;
}

Step PlineBuilder::nextLine() {
    const bool canClose = segments() >= 2;
    kcedInitGet(0, L"Arc Close Halfwidth Length Undo Width");
    kcad_point from, point;
    base(from);
    const int status = kcedGetPoint(from, canClose ? L"\nSpecify next point or [Arc/Close/Halfwidth/Length/Undo/Width]: "
                                                   : L"\nSpecify next point or [Arc/Halfwidth/Length/Undo/Width]: ",
                                    point);
    if (status == RTNORM) {
        addSegment(planar(point), 0.0);
        return Step::Continue;
    }
    if (status == RTNONE) return Step::Finish;
    if (status != RTKWORD) return Step::Cancel;
    const std::wstring option = answeredKeyword();
    if (option == L"Arc") {
        arcMode_ = true;
    } else if (option == L"Close" && canClose) {
        return closeWith(0.0);
    } else if (option == L"Close") {
        kcutPrintf(L"\nInvalid option keyword.");
    } else if (option == L"Halfwidth" || option == L"Width") {
        if (!promptWidths(option == L"Halfwidth")) return Step::Cancel;
    } else if (option == L"Length") {
        double length = 0.0;
        if (kcedGetDist(from, L"\nSpecify length of line: ", &length) != RTNORM) return Step::Cancel;
        addSegment(polarPoint(last(), direction_, length), 0.0);
    } else {
        undo();
    }
    return Step::Continue;
}

// The end of a chord that leaves the current point: asked as a direction, by
// default the chord of the arc tangent to the last segment.
std::optional<KcGePoint2d> PlineBuilder::chordEnd(double sweep, double radius) {
    kcad_point from;
    base(from);
    double chordDirection = direction_ + sweep / 2.0;
    const std::wstring prompt = L"\nSpecify direction of chord for arc <" + formatAngle(chordDirection) + L">: ";
    const int status = kcedGetOrient(from, prompt.c_str(), &chordDirection);
    if (status != RTNORM && status != RTNONE) return std::nullopt;
    return polarPoint(last(), chordDirection, 2.0 * radius * std::sin(std::fabs(sweep) / 2.0));
}

std::optional<double> PlineBuilder::arcByAngle(KcGePoint2d& end) {
    kcad_point from;
    base(from);
    double sweep = 0.0;
    if (promptIncludedAngle(from, L"\nSpecify included angle: ", &sweep) != RTNORM) return std::nullopt;
    kcedInitGet(0, L"CEnter Radius");
    kcad_point point;
    const int status = kcedGetPoint(from, L"\nSpecify endpoint of arc or [CEnter/Radius]: ", point);
    if (status == RTNORM) {
        end = planar(point);
        return sweep;
    }
    if (status != RTKWORD) return std::nullopt;
    if (answeredKeyword() == L"CEnter") {
        kcad_point center;
        if (kcedGetPoint(from, L"\nSpecify center point of arc: ", center) != RTNORM) return std::nullopt;
        const KcGePoint2d c = planar(center);
        end = polarPoint(c, angleFromTo(c, last()) + sweep, c.distanceTo(last()));
        return sweep;
    }
    double radius = 0.0;
    kcedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
    if (kcedGetDist(from, L"\nSpecify radius of arc: ", &radius) != RTNORM) return std::nullopt;
    const auto chord = chordEnd(sweep, radius);
    if (!chord) return std::nullopt;
    end = *chord;
    return sweep;
}

std::optional<double> PlineBuilder::arcByCenter(KcGePoint2d& end) {
    kcad_point from, center;
    base(from);
    if (kcedGetPoint(from, L"\nSpecify center point of arc: ", center) != RTNORM) return std::nullopt;
    const KcGePoint2d c = planar(center);
    const double radius = c.distanceTo(last()), startAngle = angleFromTo(c, last());
    kcedInitGet(0, L"Angle Length");
    kcad_point point;
    const int status = kcedGetPoint(center, L"\nSpecify endpoint of arc or [Angle/Length]: ", point);
    double sweep = 0.0;
    if (status == RTNORM) {
        sweep = angleFromTo(c, planar(point)) - startAngle;
        if (sweep <= 0.0) sweep += 2.0 * 3.14159265358979323846;
    } else if (status != RTKWORD) {
        return std::nullopt;
    } else if (answeredKeyword() == L"Angle") {
        if (promptIncludedAngle(center, L"\nSpecify included angle: ", &sweep) != RTNORM) return std::nullopt;
    } else {
        double chord = 0.0;
        kcedInitGet(RSG_NOZERO, nullptr);
        if (kcedGetDist(from, L"\nSpecify length of chord: ", &chord) != RTNORM) return std::nullopt;
        const auto chordSweep = sweepOfChord(radius, chord);
        if (!chordSweep) return std::nullopt;
        sweep = *chordSweep;
    }
    end = polarPoint(c, startAngle + sweep, radius);
    return sweep;
}

std::optional<double> PlineBuilder::arcByRadius(KcGePoint2d& end) {
    kcad_point from;
    base(from);
    double radius = 0.0;
    kcedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
    if (kcedGetDist(from, L"\nSpecify radius of arc: ", &radius) != RTNORM) return std::nullopt;
    kcedInitGet(0, L"Angle");
    kcad_point point;
    const int status = kcedGetPoint(from, L"\nSpecify endpoint of arc or [Angle]: ", point);
    if (status == RTNORM) {
        end = planar(point);
        const auto minor = sweepOfChord(radius, last().distanceTo(end));
        if (!minor) return std::nullopt;
        // The arc bends to the side of the chord the last segment turns to.
        return signedAngle(angleFromTo(last(), end) - direction_) >= 0.0 ? *minor : -*minor;
    }
    if (status != RTKWORD) return std::nullopt;
    double sweep = 0.0;
    if (promptIncludedAngle(from, L"\nSpecify included angle: ", &sweep) != RTNORM) return std::nullopt;
    const auto chord = chordEnd(sweep, radius);
    if (!chord) return std::nullopt;
    end = *chord;
    return sweep;
}

std::optional<double> PlineBuilder::arcByDirection(KcGePoint2d& end) {
    kcad_point from, point;
    base(from);
    double tangent = 0.0;
    if (kcedGetOrient(from, L"\nSpecify the tangent direction for the start point of arc: ", &tangent) != RTNORM) {
        return std::nullopt;
    }
    if (kcedGetPoint(from, L"\nSpecify endpoint of the arc: ", point) != RTNORM) return std::nullopt;
    end = planar(point);
    return sweepFromTangent(last(), tangent, end);
}

std::optional<double> PlineBuilder::arcBySecondPoint(KcGePoint2d& end) {
    kcad_point from, second, point;
    base(from);
    if (kcedGetPoint(from, L"\nSpecify second point on arc: ", second) != RTNORM) return std::nullopt;
    if (kcedGetPoint(second, L"\nSpecify end point of arc: ", point) != RTNORM) return std::nullopt;
    end = planar(point);
    return sweepThroughPoints(last(), planar(second), end);
}

Step PlineBuilder::nextArc() {
    const bool canClose = segments() >= 1;
    kcedInitGet(0, L"Angle CEnter CLose Direction Halfwidth Line Radius Second Undo Width");
    kcad_point from, point;
    base(from);
    const int status = kcedGetPoint(
        from,
        canClose ? L"\nSpecify endpoint of arc or\n[Angle/CEnter/CLose/Direction/Halfwidth/Line/Radius/Second pt/Undo/Width]: "
                 : L"\nSpecify endpoint of arc or\n[Angle/CEnter/Direction/Halfwidth/Line/Radius/Second pt/Undo/Width]: ",
        point);
    if (status == RTNORM) {
        addSegment(planar(point), bulgeOfSweep(sweepFromTangent(last(), direction_, planar(point))));
        return Step::Continue;
    }
    if (status == RTNONE) return Step::Finish;
    if (status != RTKWORD) return Step::Cancel;
    const std::wstring option = answeredKeyword();
    if (option == L"CLose" && canClose) {
        return closeWith(bulgeOfSweep(sweepFromTangent(last(), direction_, vertices_.front().point)));
    }
    if (option == L"Line") {
        arcMode_ = false;
        return Step::Continue;
    }
    if (option == L"Halfwidth" || option == L"Width") return promptWidths(option == L"Halfwidth") ? Step::Continue : Step::Cancel;
    if (option == L"Undo") {
        undo();
        return Step::Continue;
    }
    if (option == L"CLose") {
        kcutPrintf(L"\nInvalid option keyword.");
        return Step::Continue;
    }
    KcGePoint2d end;
    std::optional<double> sweep;
    if (option == L"Angle") sweep = arcByAngle(end);
    else if (option == L"CEnter") sweep = arcByCenter(end);
    else if (option == L"Radius") sweep = arcByRadius(end);
    else if (option == L"Direction") sweep = arcByDirection(end);
    else sweep = arcBySecondPoint(end);
    if (!sweep) return Step::Cancel;
    addSegment(end, bulgeOfSweep(*sweep));
    return Step::Continue;
}

void PlineBuilder::create() const {
    if (vertices_.size() < 2) return;
    auto* polyline = new KcDbPolyline();
    polyline->setNormal(ucs_.normal());
    const size_t used = closed_ ? vertices_.size() : vertices_.size() - 1;
    bool constant = true;
    for (size_t i = 0; i < used; ++i) {
        constant = constant && vertices_[i].startWidth == vertices_[0].startWidth &&
                   vertices_[i].endWidth == vertices_[0].startWidth;
    }
    double ocsElevation = 0.0;
    for (size_t i = 0; i < vertices_.size(); ++i) {
        const PlineVertex& v = vertices_[i];
        const KcGePoint3d ocs = ucs_.toOcs(ucs_.toWorld(KcGePoint3d(v.point.x, v.point.y, elevation_)));
        ocsElevation = ocs.z;
        const double bulge = i < used ? v.bulge : 0.0;
        polyline->addVertexAt(static_cast<Kcad::UInt32>(i), {ocs.x, ocs.y}, bulge, constant ? -1.0 : v.startWidth,
                              constant ? -1.0 : v.endWidth);
    }
    polyline->setElevation(ocsElevation);
    if (constant) polyline->setConstantWidth(vertices_[0].startWidth);
    polyline->setClosed(closed_);
    appendToCurrentSpace(polyline);
}

void plineCommand() {
    const UcsPlane ucs = UcsPlane::current();
    kcad_point start;
    if (kcedGetPoint(nullptr, L"\nSpecify start point: ", start) != RTNORM) return;
    const double width = editor::SystemVariables::instance().real(L"PLINEWID", 0.0);
    kcutPrintf(L"\nCurrent line-width is %s", formatDistance(width).c_str());
    PlineBuilder builder(ucs, start, width);
    Step step = Step::Continue;
    while (step == Step::Continue) step = builder.next();
    builder.create();
}

}  // namespace

void registerPlineCommand() { addBuiltInCommand(L"PLINE", plineCommand); }

}  // namespace korva::commands
