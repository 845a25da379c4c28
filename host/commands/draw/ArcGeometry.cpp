// Arc constructions in the plane of the current UCS.
#include "commands/draw/ArcGeometry.h"

#include <cmath>

namespace korva::commands {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kTwoPi = 2.0 * kPi;

double cross(const KcGeVector2d& a, const KcGeVector2d& b) { return a.x * b.y - a.y * b.x; }

double positiveAngle(double angle) {
    angle = std::fmod(angle, kTwoPi);
    return angle < 0.0 ? angle + kTwoPi : angle;
}

}  // namespace

double angleOf(const KcGeVector2d& v) { return positiveAngle(std::atan2(v.y, v.x)); }

double angleFromTo(const KcGePoint2d& from, const KcGePoint2d& to) { return angleOf(to - from); }

double signedAngle(double angle) {
    angle = positiveAngle(angle);
    return angle > kPi ? angle - kTwoPi : angle;
}

KcGePoint2d polarPoint(const KcGePoint2d& from, double angle, double distance) {
    return {from.x + distance * std::cos(angle), from.y + distance * std::sin(angle)};
}

std::optional<KcGePoint2d> circleCenter(const KcGePoint2d& a, const KcGePoint2d& b, const KcGePoint2d& c) {
    const KcGeVector2d ab = b - a, ac = c - a;
    const double d = 2.0 * cross(ab, ac);
    const double scale = ab.dotProduct(ab) + ac.dotProduct(ac);
    if (scale == 0.0 || std::fabs(d) <= 1e-12 * scale) return std::nullopt;
    const double ab2 = ab.dotProduct(ab), ac2 = ac.dotProduct(ac);
    return KcGePoint2d(a.x + (ac.y * ab2 - ab.y * ac2) / d, a.y + (ab.x * ac2 - ac.x * ab2) / d);
}

std::optional<PlaneArc> arcThroughPoints(const KcGePoint2d& start, const KcGePoint2d& through, const KcGePoint2d& end) {
    const auto center = circleCenter(start, through, end);
    if (!center) return std::nullopt;
    PlaneArc arc;
    arc.center = *center;
    arc.radius = center->distanceTo(start);
    const bool counterClockwise = cross(through - start, end - through) > 0.0;
    arc.startAngle = angleFromTo(*center, counterClockwise ? start : end);
    arc.endAngle = angleFromTo(*center, counterClockwise ? end : start);
    return arc;
}

std::optional<PlaneArc> arcFromSweep(const KcGePoint2d& start, const KcGePoint2d& end, double includedAngle) {
    if (includedAngle < 0.0) return arcFromSweep(end, start, -includedAngle);
    const double halfChord = start.distanceTo(end) / 2.0;
    if (halfChord == 0.0 || includedAngle <= 0.0 || includedAngle >= kTwoPi) return std::nullopt;
    const KcGeVector2d along = (end - start) * (1.0 / (2.0 * halfChord));
    const KcGeVector2d left(-along.y, along.x);
    // The centre lies left of the chord for a sweep under a half turn, right of it beyond.
    const double offset = halfChord / std::tan(includedAngle / 2.0);
    const KcGePoint2d middle(start.x + (end.x - start.x) / 2.0, start.y + (end.y - start.y) / 2.0);
    PlaneArc arc;
    arc.center = middle + left * offset;
    arc.radius = halfChord / std::sin(includedAngle / 2.0);
    arc.startAngle = angleFromTo(arc.center, start);
    arc.endAngle = angleFromTo(arc.center, end);
    return arc;
}

PlaneArc arcAboutCenter(const KcGePoint2d& center, const KcGePoint2d& start, const KcGePoint2d& end) {
    PlaneArc arc;
    arc.center = center;
    arc.radius = center.distanceTo(start);
    arc.startAngle = angleFromTo(center, start);
    arc.endAngle = angleFromTo(center, end);
    return arc;
}

double sweepFromTangent(const KcGePoint2d& start, double tangentAngle, const KcGePoint2d& end) {
    return 2.0 * signedAngle(angleFromTo(start, end) - tangentAngle);
}

std::optional<double> sweepThroughPoints(const KcGePoint2d& start, const KcGePoint2d& through, const KcGePoint2d& end) {
    const auto center = circleCenter(start, through, end);
    if (!center) return std::nullopt;
    const double from = angleFromTo(*center, start), to = angleFromTo(*center, end);
    if (cross(through - start, end - through) > 0.0) return positiveAngle(to - from);
    return -positiveAngle(from - to);
}

std::optional<double> sweepOfChord(double radius, double chordLength) {
    if (radius <= 0.0 || chordLength == 0.0 || std::fabs(chordLength) > 2.0 * radius) return std::nullopt;
    const double minor = 2.0 * std::asin(std::fabs(chordLength) / (2.0 * radius));
    return chordLength > 0.0 ? minor : kTwoPi - minor;
}

double bulgeOfSweep(double sweep) { return std::tan(sweep / 4.0); }

double endTangentAngle(const KcGePoint2d& start, const KcGePoint2d& end, double bulge) {
    return positiveAngle(angleFromTo(start, end) + 2.0 * std::atan(bulge));
}

}  // namespace korva::commands
