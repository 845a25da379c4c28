// CIRCLE: a circle in the XY plane of the current UCS, from its centre and
// radius (or "Diameter"), from the two ends of a diameter ("2P") or through
// three points ("3P"). The last radius is the default of the next circle.
#include <optional>

#include "commands/draw/ArcGeometry.h"
#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

double lastRadius = 0.0;  // CIRCLERAD: none until the first circle

KcGePoint2d planar(const kcad_point p) { return {p[0], p[1]}; }

void addCircle(const UcsPlane& ucs, const KcGePoint2d& center, double elevation, double radius) {
    const KcGePoint3d world = ucs.toWorld(KcGePoint3d(center.x, center.y, elevation));
    if (!appendToCurrentSpace(new KcDbCircle(world, ucs.normal(), radius)).isNull()) lastRadius = radius;
}

// The radius from the centre: a distance, a point, or "Diameter".
std::optional<double> promptRadius(const kcad_point center) {
    const std::wstring suffix = lastRadius > 0.0 ? L" <" + formatDistance(lastRadius) + L">: " : L": ";
    kcedInitGet(RSG_NOZERO | RSG_NONEG, L"Diameter");
    double radius = 0.0;
    int status = kcedGetDist(center, (L"\nSpecify radius of circle or [Diameter]" + suffix).c_str(), &radius);
    if (status == RTNONE && lastRadius > 0.0) return lastRadius;
    if (status == RTNORM) return radius;
    if (status != RTKWORD) return std::nullopt;
    const std::wstring diameterSuffix = lastRadius > 0.0 ? L" <" + formatDistance(2.0 * lastRadius) + L">: " : L": ";
    kcedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
    double diameter = 0.0;
    status = kcedGetDist(center, (L"\nSpecify diameter of circle" + diameterSuffix).c_str(), &diameter);
    if (status == RTNONE && lastRadius > 0.0) return lastRadius;
    if (status != RTNORM) return std::nullopt;
    return diameter / 2.0;
}

void twoPointCircle(const UcsPlane& ucs) {
    kcad_point a, b;
    if (kcedGetPoint(nullptr, L"\nSpecify first end point of circle's diameter: ", a) != RTNORM) return;
    if (kcedGetPoint(a, L"\nSpecify second end point of circle's diameter: ", b) != RTNORM) return;
    const KcGePoint2d center((a[0] + b[0]) / 2.0, (a[1] + b[1]) / 2.0);
    const double radius = planar(a).distanceTo(planar(b)) / 2.0;
    if (radius <= 0.0) {
        kcutPrintf(L"\nCircle does not exist.");
        return;
    }
    addCircle(ucs, center, a[2], radius);
}

void threePointCircle(const UcsPlane& ucs) {
    kcad_point a, b, c;
    if (kcedGetPoint(nullptr, L"\nSpecify first point on circle: ", a) != RTNORM) return;
    if (kcedGetPoint(a, L"\nSpecify second point on circle: ", b) != RTNORM) return;
    if (kcedGetPoint(b, L"\nSpecify third point on circle: ", c) != RTNORM) return;
    const auto center = circleCenter(planar(a), planar(b), planar(c));
    if (!center) {
        kcutPrintf(L"\nCircle does not exist.");
        return;
    }
    addCircle(ucs, *center, a[2], center->distanceTo(planar(a)));
}

void circleCommand() {
    const UcsPlane ucs = UcsPlane::current();
    kcedInitGet(0, L"3P 2P");
    kcad_point center;
    const int status = kcedGetPoint(nullptr, L"\nSpecify center point for circle or [3P/2P]: ", center);
    if (status == RTKWORD) {
        if (answeredKeyword() == L"3P") threePointCircle(ucs);
        else twoPointCircle(ucs);
        return;
    }
    if (status != RTNORM) return;
    if (const auto radius = promptRadius(center)) addCircle(ucs, planar(center), center[2], *radius);
}

}  // namespace

void registerCircleCommand() { addBuiltInCommand(L"CIRCLE", circleCommand); }

}  // namespace korva::commands
