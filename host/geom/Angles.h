// Angle arithmetic shared by arcs, ellipses and vector angles: normalisation into one
// turn, unit conversion and membership in a counter-clockwise sweep. All angles are in
// radians unless a name says otherwise.
#pragma once

namespace korva::geom {

inline constexpr double kTwoPi = 6.283185307179586476925286766559;

// The same direction expressed in [0, 2 pi).
double normalizeAngle(double radians);

double degreesToRadians(double degrees);
double radiansToDegrees(double radians);

// Length of the counter-clockwise sweep from start to end, in (0, 2 pi]. Equal angles
// (modulo a turn) mean a full turn, as a closed ellipse's parameters 0 and 2 pi do.
double sweepAngle(double start, double end);

// True when angle lies on the counter-clockwise sweep from start to end, ends included.
bool isAngleInSweep(double angle, double start, double end);

}  // namespace korva::geom
