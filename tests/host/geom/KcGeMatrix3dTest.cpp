// Transformation matrices: builders checked on known points, inversion round trips,
// singular input, the orthogonality predicates and coordinate-system alignment.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "GeomTestSupport.h"
#include "kcge.h"

namespace {

using korva::geom::test::near3;
constexpr double kPi = std::numbers::pi;
const KcGeVector3d kX = KcGeVector3d::kXAxis, kY = KcGeVector3d::kYAxis, kZ = KcGeVector3d::kZAxis;

KcGeMatrix3d generalAffine() {
    return KcGeMatrix3d::translation({5, -2, 7}) * KcGeMatrix3d::rotation(0.7, {1, 2, 3}) *
           KcGeMatrix3d::scaling(KcGeScale3d(2, 0.5, 3), {1, 1, 1});
}

TEST(KcGeMatrix3d, BuildersMoveKnownPoints) {
    struct Case { const char* name; KcGeMatrix3d m; KcGePoint3d from, to; };
    const Case cases[] = {
        {"rotation about centre", KcGeMatrix3d::rotation(kPi / 2, kZ, {1, 1, 0}), {2, 1, 0}, {1, 2, 0}},
        {"rotation about x", KcGeMatrix3d::rotation(kPi / 2, kX), {0, 1, 0}, {0, 0, 1}},
        {"scaling about centre", KcGeMatrix3d::scaling(3, {1, 1, 1}), {2, 1, 1}, {4, 1, 1}},
        {"mirror in plane x = 1", KcGeMatrix3d::mirroring({1, 0, 0}, kX * 5), {3, 5, 7}, {-1, 5, 7}},
        {"mirror in diagonal plane", KcGeMatrix3d::mirroring(KcGePoint3d::kOrigin, {1, 1, 0}), {1, 0, 0},
         {0, -1, 0}},
        {"point reflection", KcGeMatrix3d().setToMirroring(KcGePoint3d{1, 1, 1}), {2, 3, 4}, {0, -1, -2}},
        {"translation", KcGeMatrix3d::translation({1, 2, 3}), {1, 1, 1}, {2, 3, 4}},
        {"coordinate system", KcGeMatrix3d().setCoordSystem({10, 0, 0}, kY, -kX, kZ), {1, 2, 3}, {8, 1, 3}},
    };
    for (const Case& c : cases) EXPECT_TRUE(near3(c.m * c.from, c.to, 1e-12)) << c.name;
}

TEST(KcGeMatrix3d, InverseRoundTrips) {
    const std::vector<KcGeMatrix3d> matrices = {
        generalAffine(), KcGeMatrix3d::mirroring({3, 1, 0}, {1, -1, 2}), KcGeMatrix3d::scaling(1e-13),
        KcGeMatrix3d().setCoordSystem({1e6, 2e6, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}),
    };
    for (const KcGeMatrix3d& m : matrices) {
        EXPECT_FALSE(m.isSingular());
        EXPECT_TRUE((m * m.inverse()).isIdentity());
        EXPECT_TRUE((KcGeMatrix3d(m).invert() * m).isIdentity());
    }
    EXPECT_NEAR(KcGeMatrix3d::scaling(1e-13).inverse().scale(), 1e13, 1.0) << "small units are not singular";
}

TEST(KcGeMatrix3d, SingularMatrixIsLeftUnchanged) {
    KcGeMatrix3d flatten = KcGeMatrix3d::scaling(KcGeScale3d(2, 3, 0));
    KcGeMatrix3d rankTwo = generalAffine();
    for (int row = 0; row < 3; ++row) rankTwo.entry[row][2] = rankTwo.entry[row][0] + 2 * rankTwo.entry[row][1];
    // In large units rounding leaves a pivot far above any fixed absolute threshold.
    KcGeMatrix3d rankTwoLarge = KcGeMatrix3d::scaling(1e5) * rankTwo;
    for (const KcGeMatrix3d& m : {flatten, rankTwo, rankTwoLarge}) {
        EXPECT_TRUE(m.isSingular());
        EXPECT_TRUE(m.inverse().isEqualTo(m));
        EXPECT_TRUE(KcGeMatrix3d(m).invert().isEqualTo(m));
        EXPECT_NEAR(m.det(), 0.0, 1e-9 * std::abs(m.entry[0][0] * m.entry[1][1] * m.entry[2][2]));
    }
}

TEST(KcGeMatrix3d, DeterminantAndScale) {
    KcGeMatrix3d swapXY;
    swapXY.setCoordSystem(KcGePoint3d::kOrigin, kY, kX, kZ);  // needs a row swap to factor
    EXPECT_NEAR(swapXY.det(), -1.0, 1e-15);
    EXPECT_NEAR(KcGeMatrix3d::mirroring({1, 2, 3}, {1, 1, 1}).det(), -1.0, 1e-14);
    EXPECT_NEAR(generalAffine().det(), 3.0, 1e-12);
    EXPECT_NEAR((KcGeMatrix3d::rotation(1.1, {1, 1, 0}) * KcGeMatrix3d::scaling(3)).scale(), 3.0, 1e-14);
}

TEST(KcGeMatrix3d, OrthogonalityPredicates) {
    KcGeMatrix3d uniform = KcGeMatrix3d::rotation(0.3, {1, 2, 3}) * KcGeMatrix3d::scaling(2, {4, 5, 6});
    KcGeMatrix3d stretched = KcGeMatrix3d::scaling(KcGeScale3d(1, 2, 1));
    KcGeMatrix3d sheared;
    sheared.entry[0][1] = 0.5;
    EXPECT_TRUE(uniform.isUniScaledOrtho());
    EXPECT_TRUE(KcGeMatrix3d::mirroring({0, 0, 0}, kZ).isUniScaledOrtho());
    EXPECT_FALSE(stretched.isUniScaledOrtho());
    EXPECT_TRUE(stretched.isScaledOrtho());
    EXPECT_FALSE(sheared.isScaledOrtho());
}

TEST(KcGeMatrix3d, ProductsKeepTheirOrder) {
    KcGeMatrix3d shift = KcGeMatrix3d::translation({1, 0, 0}), turn = KcGeMatrix3d::rotation(kPi / 2, kZ);
    KcGeMatrix3d turnThenShift = turn;
    turnThenShift.preMultBy(shift);
    EXPECT_TRUE(near3(turnThenShift * KcGePoint3d(1, 0, 0), {1, 1, 0}));
    KcGeMatrix3d shiftThenTurn = turn;
    shiftThenTurn.postMultBy(shift);
    EXPECT_TRUE(near3(shiftThenTurn * KcGePoint3d(1, 0, 0), {0, 2, 0}));
    KcGeMatrix3d aliased = turn;
    aliased.setToProduct(aliased, aliased);
    EXPECT_TRUE(aliased.isEqualTo(turn * turn));
}

TEST(KcGeMatrix3d, AlignCoordSysMapsOneFrameOntoAnother) {
    KcGePoint3d fromOrigin(1, 2, 3), toOrigin(10, 0, 0);
    KcGeVector3d fromX = kY, fromY = -kX, fromZ = kZ, toX = kZ, toY = kX, toZ = kY;
    KcGeMatrix3d m = KcGeMatrix3d::alignCoordSys(fromOrigin, fromX, fromY, fromZ, toOrigin, toX, toY, toZ);
    KcGePoint3d inFrom = fromOrigin + fromX * 2 + fromY * 3 + fromZ * 4;
    EXPECT_TRUE(near3(m * inFrom, toOrigin + toX * 2 + toY * 3 + toZ * 4));
    KcGePoint3d origin;
    KcGeVector3d x, y, z;
    KcGeMatrix3d().setCoordSystem(toOrigin, toX, toY, toZ).getCoordSystem(origin, x, y, z);
    EXPECT_EQ(origin, toOrigin);
    EXPECT_EQ(y, toY);
}

TEST(KcGeMatrix3d, PlaneToWorldUsesTheArbitraryAxis) {
    EXPECT_TRUE(KcGeMatrix3d::planeToWorld(kZ).isIdentity());
    KcGeMatrix3d flipped = KcGeMatrix3d::planeToWorld(-kZ);
    EXPECT_TRUE(near3(flipped * kX, -kX));
    EXPECT_TRUE(near3(flipped * kY, kY));
    KcGeVector3d tilted(1, -2, 0.5);
    KcGeMatrix3d toWorld = KcGeMatrix3d::planeToWorld(tilted);
    EXPECT_TRUE(near3(toWorld * kZ, tilted.normal()));
    EXPECT_TRUE((KcGeMatrix3d::worldToPlane(tilted) * toWorld).isIdentity());
}

}  // namespace
