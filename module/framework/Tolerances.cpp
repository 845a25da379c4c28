// Tolerance comparisons and angle normalisation. Pure arithmetic, so the
// module's tests compile this file directly.
#include "framework/Tolerances.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace {

constexpr double kTwoPi = 6.283185307179586476925286766559;
constexpr double kRealTolerance = 1e-10;
constexpr double kAbsoluteAngleTolerance = 1e-6;
constexpr double kHugeAngle = 1e6;
constexpr double kHundredThousandTurns = 628318.5307179586;
constexpr double kThousandTurns = 6283.185307179586;

// Into [0, 2 pi]: a negative angle takes 2 pi minus its reduced magnitude, so a
// negative multiple of 2 pi gives 2 pi.
double reduceAngle(double angle) {
    double magnitude = std::fabs(angle);
    if (magnitude >= kTwoPi) magnitude -= kTwoPi * std::floor(magnitude / kTwoPi);
    return angle < 0.0 ? kTwoPi - magnitude : magnitude;
}

// normlizedAng's own copy of the validity test.
bool isUsableReal(double x) {
    const auto bits = std::bit_cast<std::uint64_t>(x);
    if ((bits & 0x7fffffffffffffffULL) == 0) return true;
    const auto exponent = (bits >> 52) & 0x7ffULL;
    if (exponent == 0x7ffULL) return false;
    return exponent != 0;
}

enum class UpperBound { Exclusive, Inclusive };

// One angle of an arc: huge or invalid values become 0, whole turns are removed
// in big steps first, then single turns with a small margin. The end angle's
// upper test subtracts the margin, so an end of exactly 2 pi is kept.
void normaliseAngle(double& angle, bool (*isValid)(double), UpperBound bound) {
    if (!isValid(angle) || std::fabs(angle) > kHugeAngle) {
        angle = 0.0;
        return;
    }
    while (angle > kHundredThousandTurns) angle -= kHundredThousandTurns;
    while (angle < -kHundredThousandTurns) angle += kHundredThousandTurns;
    while (angle > kThousandTurns) angle -= kThousandTurns;
    while (angle < -kThousandTurns) angle += kThousandTurns;
    const double e = kRealTolerance;
    if (angle + e < 0.0) {
        while (angle + e < 0.0) angle += kTwoPi;
    } else if (bound == UpperBound::Exclusive) {
        while (angle + e >= kTwoPi) angle -= kTwoPi;
    } else {
        while (angle - e >= kTwoPi) angle -= kTwoPi;
    }
}

double* normaliseArc(double* startAngle, double* endAngle, bool (*isValid)(double)) {
    if (!startAngle) return nullptr;
    normaliseAngle(*startAngle, isValid, UpperBound::Exclusive);
    if (endAngle) {
        normaliseAngle(*endAngle, isValid, UpperBound::Inclusive);
        if (!KvAngleEqual(*startAngle, *endAngle) && *endAngle < *startAngle) *endAngle += kTwoPi;
    }
    return startAngle;
}

}  // namespace

bool KvRealEqual(double a, double b) {
    if (a == 0.0 && b == 0.0) return true;
    const double e = kRealTolerance;
    if (std::fabs(b) <= e) return std::fabs(a) <= e;
    return std::fabs(a - b) <= std::fabs(b * e);
}

bool KvAngleEqual(double a, double b) {
    if (a == 0.0 && b == 0.0) return true;
    return KvRealEqual(reduceAngle(a), reduceAngle(b));
}

bool kcadAngleEqual(double a, double b) { return std::fabs(reduceAngle(a) - reduceAngle(b)) < kAbsoluteAngleTolerance; }

bool KvPointEqual(const KcGePoint3d& p, const KcGePoint3d& q) {
    return KvRealEqual(p.x, q.x) && KvRealEqual(p.y, q.y) && KvRealEqual(p.z, q.z);
}

bool KvPointEqual(const kcad_point p, const kcad_point q) {
    return KvRealEqual(p[0], q[0]) && KvRealEqual(p[1], q[1]) && KvRealEqual(p[2], q[2]);
}

bool kv_isvalid_real(double x) {
    const auto bits = std::bit_cast<std::uint64_t>(x);
    if ((bits & 0x7fffffffffffffffULL) == 0) return true;
    const auto exponent = (bits >> 52) & 0x7ffULL;
    if (exponent == 0x7ffULL) return false;
    return exponent != 0;
}

double* normlizedAng(double* startAngle, double* endAngle) { return normaliseArc(startAngle, endAngle, isUsableReal); }

double* kv_normang(double* startAngle, double* endAngle) { return normaliseArc(startAngle, endAngle, kv_isvalid_real); }
