// Angle normalisation and sweep membership. Sweeps wrap through zero, so every test
// works on offsets from the start angle rather than on raw angle values.
#include "geom/Angles.h"

#include <cmath>
#include <numbers>

namespace korva::geom {

double normalizeAngle(double radians) {
    double angle = std::fmod(radians, kTwoPi);
    if (angle < 0.0) angle += kTwoPi;
    // A tiny negative input rounds to exactly 2 pi after the addition.
    return angle >= kTwoPi ? 0.0 : angle;
}

double degreesToRadians(double degrees) { return degrees * (std::numbers::pi / 180.0); }

double radiansToDegrees(double radians) { return radians * (180.0 / std::numbers::pi); }

double sweepAngle(double start, double end) {
    double sweep = normalizeAngle(end - start);
    return sweep == 0.0 ? kTwoPi : sweep;
}

bool isAngleInSweep(double angle, double start, double end) {
    return normalizeAngle(angle - start) <= sweepAngle(start, end);
}

}  // namespace korva::geom
