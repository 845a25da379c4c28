// Bulge arcs and exact arc/ellipse extents. Extents are checked against known boxes
// and against dense sampling of the curve built independently of the code under test.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

#include "GeomTestSupport.h"
#include "geom/Angles.h"
#include "geom/CurveMath.h"
#include "geom/Ocs.h"

namespace korva::geom {
namespace {

using test::boxNear;
constexpr double kPi = std::numbers::pi;
const KcGeVector3d kZ = KcGeVector3d::kZAxis;

// The box of many points of the curve for parameters from start, counter-clockwise,
// over sweepAngle(start, end).
Box3d sampledBox(const std::function<KcGePoint3d(double)>& curve, double start, double end) {
    constexpr int kSamples = 200000;
    Box3d box;
    double sweep = sweepAngle(start, end);
    for (int i = 0; i <= kSamples; ++i) box.add(curve(start + sweep * i / kSamples));
    return box;
}

TEST(BulgeToArc, KnownArcs) {
    const double quarter = std::tan(kPi / 8), threeQuarter = std::tan(3 * kPi / 8);
    struct Case { KcGePoint2d p0, p1; double bulge; KcGePoint2d center; double radius, start, end; bool ccw; };
    const Case cases[] = {
        {{0, 0}, {2, 0}, 1.0, {1, 0}, 1.0, kPi, 0.0, true},   // semicircle below the chord
        {{0, 0}, {2, 0}, -1.0, {1, 0}, 1.0, kPi, 0.0, false},  // semicircle above it
        {{1, 0}, {0, 1}, quarter, {0, 0}, 1.0, 0.0, kPi / 2, true},
        {{0, 1}, {1, 0}, -quarter, {0, 0}, 1.0, kPi / 2, 0.0, false},
        {{1, 0}, {0, -1}, threeQuarter, {0, 0}, 1.0, 0.0, 1.5 * kPi, true},
        {{5, 5}, {5, 9}, quarter, {3, 7}, 2 * std::numbers::sqrt2, 1.75 * kPi, kPi / 4, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "bulge " << c.bulge << " to (" << c.p1.x << ", " << c.p1.y << ")");
        BulgeArc arc = bulgeToArc(c.p0, c.p1, c.bulge);
        EXPECT_TRUE(arc.center.isEqualTo(c.center, KcGeTol())) << arc.center.x << ", " << arc.center.y;
        EXPECT_NEAR(arc.radius, c.radius, 1e-12);
        EXPECT_NEAR(arc.startAngle, c.start, 1e-12);
        EXPECT_NEAR(arc.endAngle, c.end, 1e-12);
        EXPECT_EQ(arc.counterClockwise, c.ccw);
    }
    EXPECT_FALSE(bulgeToArc({0, 0}, {1, 0}, 0.0).isArc());
    EXPECT_FALSE(bulgeToArc({1, 1}, {1, 1}, 0.5).isArc());
}

TEST(ArcExtents, AxisCrossingsAndPlanes) {
    const double h = std::numbers::sqrt2 / 2, c10 = std::cos(kPi / 18), s10 = std::sin(kPi / 18);
    struct Case { const char* name; Box3d box; KcGePoint3d min, max; };
    const Case cases[] = {
        {"crossing 0", arcExtents({0, 0, 0}, 2, 35 * kPi / 18, kPi / 18, kZ), {2 * c10, -2 * s10, 0}, {2, 2 * s10, 0}},
        {"crossing 90", arcExtents({0, 0, 0}, 1, kPi / 4, 0.75 * kPi, kZ), {-h, h, 0}, {h, 1, 0}},
        {"three quarters from 90 to 0", arcExtents({0, 0, 0}, 1, kPi / 2, 0, kZ), {-1, -1, 0}, {1, 1, 0}},
        {"downward normal", arcExtents({2, 0, 5}, 1, 0, kPi / 2, -kZ), {-3, 0, -5}, {-2, 1, -5}},
        {"circle facing x", circleExtents({0, 0, 3}, 2, {1, 0, 0}), {3, -2, -2}, {3, 2, 2}},
    };
    for (const Case& c : cases) EXPECT_TRUE(boxNear(c.box, c.min, c.max, 1e-12)) << c.name;
}

TEST(ArcExtents, TiltedPlaneMatchesSampling) {
    KcGeVector3d normal(1, 1, 1);
    KcGePoint3d center(1, 2, 3);
    double radius = 2.5, start = 5.5, end = 1.0;
    auto arcPoint = [&](double a) {
        return ocsToWcs(center + KcGeVector3d(std::cos(a), std::sin(a), 0) * radius, normal);
    };
    Box3d sampled = sampledBox(arcPoint, start, end);
    EXPECT_TRUE(boxNear(arcExtents(center, radius, start, end, normal), sampled.min(), sampled.max(), 1e-9));
}

TEST(EllipseExtents, RotatedFullEllipseIsExact) {
    // Major (3,4,0), minor (-2,1.5,0): half widths sqrt(3^2 + 2^2) and sqrt(4^2 + 1.5^2).
    Box3d box = ellipseExtents({1, 2, 3}, {3, 4, 0}, kZ, 0.5, 0, kTwoPi);
    KcGeVector3d half(std::sqrt(13.0), std::sqrt(18.25), 0);
    EXPECT_TRUE(boxNear(box, KcGePoint3d(1, 2, 3) - half, KcGePoint3d(1, 2, 3) + half, 1e-12));
}

TEST(EllipseExtents, PartialEllipsesMatchSampling) {
    struct Case { KcGePoint3d center; KcGeVector3d major, normal; double ratio, start, end; };
    const Case cases[] = {
        {{0, 0, 0}, {2, 1, 1}, {0, -1, 1}, 0.3, 5.0, 1.2},
        {{4, -1, 2}, {3, 0, -1}, {1, 2, 3}, 0.8, 0.3, 2.9},
        {{0, 0, 0}, {0, 5, 0}, {0, 0, -1}, 0.2, 1.0, 1.0 + kTwoPi},
    };
    for (const Case& c : cases) {
        // The minor axis: the major axis turned a quarter about the normal, shortened.
        KcGeVector3d minor = (KcGeMatrix3d::rotation(kPi / 2, c.normal) * c.major) * c.ratio;
        auto point = [&](double t) { return c.center + c.major * std::cos(t) + minor * std::sin(t); };
        Box3d sampled = sampledBox(point, c.start, c.end);
        Box3d exact = ellipseExtents(c.center, c.major, c.normal, c.ratio, c.start, c.end);
        EXPECT_TRUE(boxNear(exact, sampled.min(), sampled.max(), 1e-9)) << "ratio " << c.ratio;
    }
}

}  // namespace
}  // namespace korva::geom
