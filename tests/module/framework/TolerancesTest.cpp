// The tolerance and angle rules of the framework, pinned case by case: the
// relative real comparison, the two angle comparisons with their different
// reductions and tolerances, the validity test of doubles, and the arc
// normalisation with its deliberate start/end asymmetry.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "framework/Tolerances.h"

namespace {

constexpr double kTwoPi = 6.283185307179586476925286766559;

TEST(Tolerances, RealEqualityIsRelativeWithAnAbsoluteFloorNearZero) {
    const struct {
        double a, b;
        bool equal;
    } cases[] = {
        {0.0, 0.0, true},
        {-0.0, 0.0, true},
        {1e-11, 0.0, true},            // b within 1e-10: a need only be as small
        {0.0, 1e-11, true},
        {2e-10, 0.0, false},
        {1.0, 1.0 + 2e-10, false},     // relative: 2e-10 > 1 * 1e-10
        {1.0, 1.0 + 0.5e-10, true},
        {1e10, 1e10 + 0.5, true},      // relative: 0.5 <= 1e10 * 1e-10
        {1e10, 1e10 + 2.0, false},
        {-5.0, -5.0 - 4e-10, true},
        {-5.0, 5.0, false},
        {5e-10, 1e-10, false},         // b at the floor: |a| itself must be within 1e-10
    };
    for (const auto& c : cases) EXPECT_EQ(KvRealEqual(c.a, c.b), c.equal) << c.a << " vs " << c.b;
}

TEST(Tolerances, AngleEqualityReducesIntoOneTurnWithNegativeTurnsAtTwoPi) {
    const struct {
        double a, b;
        bool kv;    // KvAngleEqual: relative 1e-10
        bool kcad;  // kcadAngleEqual: absolute 1e-6
    } cases[] = {
        {0.0, 0.0, true, true},
        {-kTwoPi, 0.0, false, false},           // -2 pi reduces to 2 pi, not 0
        {-kTwoPi, kTwoPi, false, false},        // 2 pi against 0
        {kTwoPi, 0.0, true, true},              // +2 pi reduces to 0
        {0.0, kTwoPi - 1e-7, false, false},
        {1.0, 1.0 + kTwoPi, true, true},
        {1.0, 1.0 + 3 * kTwoPi, true, true},
        {-1.0, kTwoPi - 1.0, true, true},
        {-1.0, 1.0, false, false},
        {1.0, 1.0 + 5e-7, false, true},         // only the absolute tolerance accepts it
        {1.0, 1.0 + 2e-6, false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(KvAngleEqual(c.a, c.b), c.kv) << "KvAngleEqual " << c.a << " vs " << c.b;
        EXPECT_EQ(kcadAngleEqual(c.a, c.b), c.kcad) << "kcadAngleEqual " << c.a << " vs " << c.b;
    }
}

TEST(Tolerances, PointsAreEqualWhenEveryCoordinateIsRelativelyEqual) {
    EXPECT_TRUE(KvPointEqual(KcGePoint3d(1e10, 0.0, -3.0), KcGePoint3d(1e10 + 0.5, 1e-11, -3.0)));
    EXPECT_FALSE(KvPointEqual(KcGePoint3d(1.0, 2.0, 3.0), KcGePoint3d(1.0, 2.0, 3.0 + 1e-6)));
    EXPECT_FALSE(KvPointEqual(KcGePoint3d(1.0, 2.0, 3.0), KcGePoint3d(1.0, 2.0 + 1e-6, 3.0)));
    const kcad_point p = {1.0, 2.0, 3.0};
    const kcad_point q = {1.0, 2.0, 3.0 + 1e-12};
    const kcad_point r = {1.0 + 1e-6, 2.0, 3.0};
    EXPECT_TRUE(KvPointEqual(p, q));
    EXPECT_FALSE(KvPointEqual(p, r));
}

TEST(Tolerances, ValidRealsAreZerosAndNormalNumbersOnly) {
    const double subnormal = std::numeric_limits<double>::denorm_min();
    const struct {
        double x;
        bool valid;
    } cases[] = {
        {0.0, true},
        {-0.0, true},
        {1.0, true},
        {-1e300, true},
        {std::numeric_limits<double>::min(), true},  // smallest normal
        {subnormal, false},
        {-subnormal * 8, false},
        {std::numeric_limits<double>::infinity(), false},
        {-std::numeric_limits<double>::infinity(), false},
        {std::numeric_limits<double>::quiet_NaN(), false},
    };
    for (const auto& c : cases) EXPECT_EQ(kv_isvalid_real(c.x), c.valid) << c.x;
}

TEST(Tolerances, ArcNormalisationBringsAnglesIntoOneTurnWithAPositiveSweep) {
    const struct {
        double start, end;
        double wantStart, wantEnd;
    } cases[] = {
        {1.0, 0.5, 1.0, 0.5 + kTwoPi},          // end before start: the sweep becomes positive
        {0.5, 1.0, 0.5, 1.0},
        {7.0, 8.0, 7.0 - kTwoPi, 8.0 - kTwoPi},
        {2e6, 1.0, 0.0, 1.0},                   // huge start becomes 0
        {-1.0, 1.0, kTwoPi - 1.0, 1.0 + kTwoPi},
        {0.0, kTwoPi, 0.0, kTwoPi},             // an end of exactly 2 pi stays
        {kTwoPi, kTwoPi, 0.0, kTwoPi},          // a start of 2 pi becomes 0
        {1.0, 1.0 + 1e-11, 1.0, 1.0 + 1e-11},   // equal by KvAngleEqual: no extra turn
        {7000.0, 0.0, 7000.0 - 1114 * kTwoPi, 0.0 + kTwoPi},
        {-7000.0, 0.0, -7000.0 + 1115 * kTwoPi, kTwoPi},
    };
    for (auto normalise : {normlizedAng, kv_normang}) {
        for (const auto& c : cases) {
            double start = c.start;
            double end = c.end;
            EXPECT_EQ(normalise(&start, &end), &start);
            EXPECT_NEAR(start, c.wantStart, 1e-9) << c.start << ", " << c.end;
            EXPECT_NEAR(end, c.wantEnd, 1e-9) << c.start << ", " << c.end;
        }
    }
}

TEST(Tolerances, ArcNormalisationKeepsTheStartAndEndAsymmetry) {
    for (auto normalise : {normlizedAng, kv_normang}) {
        double start = kTwoPi - 1e-11;  // within the margin of a full turn: wraps below zero
        EXPECT_EQ(normalise(&start, nullptr), &start);
        EXPECT_LT(start, 0.0);
        EXPECT_NEAR(start, -1e-11, 1e-13);
        double nan = std::numeric_limits<double>::quiet_NaN();
        normalise(&nan, nullptr);
        EXPECT_EQ(nan, 0.0) << "an invalid start becomes 0";
        double huge = -2e6;
        double end = 2e6;
        normalise(&huge, &end);
        EXPECT_EQ(huge, 0.0);
        EXPECT_EQ(end, 0.0) << "an invalid or huge end becomes 0 as well";
        EXPECT_EQ(normalise(nullptr, &end), nullptr);
    }
}

}  // namespace
