// ARC: an arc in the XY plane of the current UCS. Three points (start, second,
// end); "Center" then start and end, an included "Angle" or a "chord Length";
// or start, "End" and then the centre, an included "Angle", a start "Direction"
// or a "Radius". Arcs run counter-clockwise from start to end; a negative angle
// or chord length turns the other way or takes the major arc, as in real hosts.
#include <cmath>
#include <optional>

#include "commands/draw/ArcGeometry.h"
#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

KcGePoint2d planar(const kcad_point p) { return {p[0], p[1]}; }

void addArc(const UcsPlane& ucs, const std::optional<PlaneArc>& arc, double elevation) {
    if (!arc || arc->radius <= 0.0) {
        kcutPrintf(L"\nInvalid arc.");
        return;
    }
    const KcGePoint3d center = ucs.toWorld(KcGePoint3d(arc->center.x, arc->center.y, elevation));
    appendToCurrentSpace(new KcDbArc(center, ucs.normal(), arc->radius, ucs.ocsAngle(arc->startAngle),
                                     ucs.ocsAngle(arc->endAngle)));
}

// "Specify end point of arc or [Angle/chord Length]:" after a start point and a centre.
void finishFromCenter(const UcsPlane& ucs, const kcad_point start, const kcad_point center) {
    const KcGePoint2d s = planar(start), c = planar(center);
    kcedInitGet(0, L"Angle Length");
    kcad_point end;
    int status = kcedGetPoint(center, L"\nSpecify end point of arc or [Angle/chord Length]: ", end);
    if (status == RTNORM) {
        addArc(ucs, arcAboutCenter(c, s, planar(end)), start[2]);
        return;
    }
    if (status != RTKWORD) return;
    const double radius = c.distanceTo(s);
    const double startAngle = angleFromTo(c, s);
    double sweep = 0.0;
    if (answeredKeyword() == L"Angle") {
        if (promptIncludedAngle(center, L"\nSpecify included angle: ", &sweep) != RTNORM) return;
    } else {
        double chord = 0.0;
        kcedInitGet(RSG_NOZERO, nullptr);
        if (kcedGetDist(start, L"\nSpecify length of chord: ", &chord) != RTNORM) return;
        const auto chordSweep = sweepOfChord(radius, chord);
        if (!chordSweep) {
            kcutPrintf(L"\nInvalid arc.");
            return;
        }
        sweep = *chordSweep;
    }
    const KcGePoint2d e = polarPoint(c, startAngle + sweep, radius);
    addArc(ucs, sweep > 0.0 ? arcAboutCenter(c, s, e) : arcAboutCenter(c, e, s), start[2]);
}

// "Specify center point of arc or [Angle/Direction/Radius]:" after a start and an end point.
void finishFromEnd(const UcsPlane& ucs, const kcad_point start, const kcad_point end) {
    const KcGePoint2d s = planar(start), e = planar(end);
    kcedInitGet(0, L"Angle Direction Radius");
    kcad_point center;
    int status = kcedGetPoint(end, L"\nSpecify center point of arc or [Angle/Direction/Radius]: ", center);
    if (status == RTNORM) {
        addArc(ucs, arcAboutCenter(planar(center), s, e), start[2]);
        return;
    }
    if (status != RTKWORD) return;
    const std::wstring option = answeredKeyword();
    double sweep = 0.0;
    if (option == L"Angle") {
        if (promptIncludedAngle(start, L"\nSpecify included angle: ", &sweep) != RTNORM) return;
    } else if (option == L"Direction") {
        double tangent = 0.0;
        if (kcedGetOrient(start, L"\nSpecify tangent direction for the start point of arc: ", &tangent) != RTNORM) return;
        sweep = sweepFromTangent(s, tangent, e);
    } else {
        double radius = 0.0;
        kcedInitGet(RSG_NOZERO, nullptr);
        if (kcedGetDist(end, L"\nSpecify radius of arc: ", &radius) != RTNORM) return;
        const auto radiusSweep = sweepOfChord(std::fabs(radius), radius > 0.0 ? s.distanceTo(e) : -s.distanceTo(e));
        if (!radiusSweep) {
            kcutPrintf(L"\nInvalid arc.");
            return;
        }
        sweep = *radiusSweep;
    }
    addArc(ucs, arcFromSweep(s, e, sweep), start[2]);
}

void arcFromCenterFirst(const UcsPlane& ucs) {
    kcad_point center, start;
    if (kcedGetPoint(nullptr, L"\nSpecify center point of arc: ", center) != RTNORM) return;
    if (kcedGetPoint(center, L"\nSpecify start point of arc: ", start) != RTNORM) return;
    finishFromCenter(ucs, start, center);
}

void arcCommand() {
    const UcsPlane ucs = UcsPlane::current();
    kcedInitGet(0, L"Center");
    kcad_point start;
    int status = kcedGetPoint(nullptr, L"\nSpecify start point of arc or [Center]: ", start);
    if (status == RTKWORD) {
        arcFromCenterFirst(ucs);
        return;
    }
    if (status != RTNORM) return;
    kcedInitGet(0, L"Center End");
    kcad_point second;
    status = kcedGetPoint(start, L"\nSpecify second point of arc or [Center/End]: ", second);
    if (status == RTKWORD) {
        if (answeredKeyword() == L"Center") {
            kcad_point center;
            if (kcedGetPoint(start, L"\nSpecify center point of arc: ", center) != RTNORM) return;
            finishFromCenter(ucs, start, center);
        } else {
            kcad_point end;
            if (kcedGetPoint(start, L"\nSpecify end point of arc: ", end) != RTNORM) return;
            finishFromEnd(ucs, start, end);
        }
        return;
    }
    if (status != RTNORM) return;
    kcad_point end;
    if (kcedGetPoint(second, L"\nSpecify end point of arc: ", end) != RTNORM) return;
    addArc(ucs, arcThroughPoints(planar(start), planar(second), planar(end)), start[2]);
}

}  // namespace

void registerArcCommand() { addBuiltInCommand(L"ARC", arcCommand); }

}  // namespace korva::commands
