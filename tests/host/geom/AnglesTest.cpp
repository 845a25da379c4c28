// Angle normalisation and sweeps, above all sweeps that wrap through zero.
#include <gtest/gtest.h>

#include <numbers>

#include "geom/Angles.h"

namespace korva::geom {
namespace {

constexpr double kPi = std::numbers::pi;

TEST(Angles, NormalizeAngleMapsIntoOneTurn) {
    struct Case { double input, expected; };
    for (Case c : {Case{-kPi / 2, 1.5 * kPi}, Case{2.5 * kPi, 0.5 * kPi}, Case{kTwoPi, 0.0},
                   Case{-1e-20, 0.0}, Case{-4 * kPi - 1.0, kTwoPi - 1.0}}) {
        double result = normalizeAngle(c.input);
        EXPECT_NEAR(result, c.expected, 1e-12) << "input " << c.input;
        EXPECT_LT(result, kTwoPi) << "input " << c.input;
    }
}

TEST(Angles, ConvertsBetweenDegreesAndRadians) {
    EXPECT_DOUBLE_EQ(degreesToRadians(90.0), kPi / 2);
    EXPECT_DOUBLE_EQ(radiansToDegrees(kPi), 180.0);
}

TEST(Angles, SweepMembershipWrapsThroughZero) {
    struct Case { double angle, start, end; bool inside; };
    const Case cases[] = {
        {0.0, 1.5 * kPi, 0.5 * kPi, true},        // sweep crossing zero
        {kPi, 1.5 * kPi, 0.5 * kPi, false},
        {-kPi / 4, 1.5 * kPi, 0.0, true},         // negative angle inside
        {0.5 * kPi, 0.0, 0.5 * kPi, true},        // end is included
        {0.5 * kPi + 1e-6, 0.0, 0.5 * kPi, false},
        {3.0, 1.0, 1.0 + kTwoPi, true},           // equal ends mean a full turn
        {4.0, 0.5 * kPi, 0.0, true},              // start above end: three quarters
        {0.2, 0.5 * kPi, 0.0, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(isAngleInSweep(c.angle, c.start, c.end), c.inside)
            << c.angle << " in [" << c.start << ", " << c.end << "]";
}

}  // namespace
}  // namespace korva::geom
