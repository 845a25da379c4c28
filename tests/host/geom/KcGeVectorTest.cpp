// Vectors, points and scales: direction predicates, signed angles and the difference
// between per-component (vector) and distance (point) tolerances.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "GeomTestSupport.h"
#include "kcge.h"

namespace {

using korva::geom::test::near3;
constexpr double kPi = std::numbers::pi;
const KcGeVector3d kX = KcGeVector3d::kXAxis, kY = KcGeVector3d::kYAxis, kZ = KcGeVector3d::kZAxis;

TEST(KcGeVector3d, AngleToIsCounterClockwiseAboutReference) {
    struct Case { KcGeVector3d to, reference; double expected; };
    const Case cases[] = {
        {kY, kZ, kPi / 2},  {kY, -kZ, 1.5 * kPi}, {-kX, kZ, kPi},
        {kX, kZ, 0.0},      {{1, -1, 0}, kZ, 1.75 * kPi},
        {{0, 1, 5}, kZ, kPi / 2},  // out of plane: the 3D angle, signed by side
    };
    for (const Case& c : cases) EXPECT_NEAR(kX.angleTo(c.to, c.reference), c.expected, 1e-12);
    EXPECT_LT(kX.angleTo({1, -1e-17, 0}, kZ), kPi) << "a tiny negative angle must not become 2 pi";
    EXPECT_NEAR(kX.angleTo(-kX), kPi, 1e-15);
    EXPECT_NEAR(KcGeVector2d(0, -1).angle(), 1.5 * kPi, 1e-15);
}

TEST(KcGeVector3d, DirectionPredicates) {
    struct Case { KcGeVector3d a, b; bool parallel, codirectional, perpendicular; };
    const Case cases[] = {
        {kX, kX * 2, true, true, false},   {kX, kX * -3, true, false, false},
        {kX, kY * 7, false, false, true},  {kX, {}, false, false, false},
        {kX, {1, 1e-9, 0}, false, false, false}, {{1, 1, 0}, {-1, 1, 3}, false, false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(korva::geom::test::describe(c.b));
        EXPECT_EQ(c.a.isParallelTo(c.b), c.parallel);
        EXPECT_EQ(c.a.isCodirectionalTo(c.b), c.codirectional);
        EXPECT_EQ(c.a.isPerpendicularTo(c.b), c.perpendicular);
    }
}

TEST(KcGeVector3d, NormalRotationAndPerpendicular) {
    EXPECT_TRUE(near3(KcGeVector3d(3, 4, 0).normal(), {0.6, 0.8, 0}, 1e-15));
    EXPECT_EQ(KcGeVector3d().normal(), KcGeVector3d());
    EXPECT_TRUE(near3(KcGeVector3d(kX).rotateBy(kPi / 2, kZ), kY));
    EXPECT_TRUE(near3(KcGeVector3d(kX).rotateBy(kPi / 2, -kZ * 4), -kY));
    for (KcGeVector3d v : {kZ, -kZ, KcGeVector3d{1, 2, 3}, KcGeVector3d{0.001, 0, 1}}) {
        EXPECT_TRUE(v.perpVector().isPerpendicularTo(v));
        EXPECT_TRUE(v.perpVector().isUnitLength());
    }
}

TEST(KcGeTolerance, VectorsCompareByComponentPointsByDistance) {
    EXPECT_TRUE(kX.isEqualTo({1 + 5e-13, 5e-13, 5e-13}));
    EXPECT_FALSE(kX.isEqualTo({1 + 5e-12, 0, 0}));
    // Each component is within equalPoint (1e-10) but the distance is not.
    KcGePoint3d p(1, 2, 3);
    EXPECT_FALSE(p.isEqualTo(p + KcGeVector3d(6e-11, 6e-11, 6e-11)));
    EXPECT_TRUE(p.isEqualTo(p + KcGeVector3d(5e-11, 5e-11, 5e-11)));
    KcGeTol loose;
    loose.setEqualPoint(0.5);
    EXPECT_TRUE(KcGePoint2d(0, 0).isEqualTo({0.3, 0.3}, loose));
    EXPECT_FALSE(KcGePoint2d(0, 0).isEqualTo({0.4, 0.4}, loose)) << "each component within, distance not";
}

TEST(KcGeScale3d, ProportionalityIsRelative) {
    EXPECT_TRUE(KcGeScale3d(2.0).isProportional());
    EXPECT_FALSE(KcGeScale3d(2, 2, 2.0001).isProportional());
    EXPECT_TRUE(KcGeScale3d(1000, 1000 + 1e-10, 1000).isProportional());
    EXPECT_TRUE(KcGeScale3d(1, 1, 1).isEqualTo(KcGeScale3d::kIdentity));
    EXPECT_FALSE(KcGeScale3d(1, -1, 1).isEqualTo(KcGeScale3d::kIdentity));
}

}  // namespace
