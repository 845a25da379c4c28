// NURBS evaluation against closed forms (Bernstein polynomials, uniform B-spline
// weights, the rational circle) and extents against the exact arc box.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "GeomTestSupport.h"
#include "geom/Angles.h"
#include "geom/CurveMath.h"

namespace korva::geom {
namespace {

using test::near3;
using Points = std::vector<KcGePoint3d>;

KcGePoint3d combine(const Points& points, const std::vector<double>& factors) {
    KcGeVector3d sum;
    for (std::size_t i = 0; i < points.size(); ++i) sum += points[i].asVector() * factors[i];
    return KcGePoint3d::kOrigin + sum;
}

TEST(EvaluateNurbs, QuadraticBezierMatchesBernsteinForm) {
    const Points points = {{0, 0, 0}, {1, 2, 0}, {2, 0, 1}};
    const std::vector<double> knots = {0, 0, 0, 1, 1, 1};
    for (double t : {0.0, 0.25, 0.5, 0.9, 1.0}) {
        KcGePoint3d expected = combine(points, {(1 - t) * (1 - t), 2 * t * (1 - t), t * t});
        EXPECT_TRUE(near3(evaluateNurbs(2, knots, points, {}, t), expected, 1e-14)) << "t = " << t;
    }
    EXPECT_EQ(evaluateNurbs(2, knots, points, {}, -1.0), points.front()) << "clamped to the domain";
    // A fourth point on an empty last span changes nothing, even at the domain end.
    Points extended = points;
    extended.push_back({9, 9, 9});
    for (double t : {0.5, 1.0})
        EXPECT_TRUE(near3(evaluateNurbs(2, {0, 0, 0, 1, 1, 1, 1}, extended, {}, t),
                          evaluateNurbs(2, knots, points, {}, t), 1e-14)) << "t = " << t;
    EXPECT_TRUE(near3(evaluateNurbs(2, knots, points, {}, 2.0), points.back(), 1e-15));
}

TEST(EvaluateNurbs, UniformCubicUsesTheRightSpans) {
    const Points points = {{0, 0, 0}, {1, 2, 0}, {3, 3, 0}, {4, 0, 0}};
    const std::vector<double> knots = {0, 1, 2, 3, 4, 5, 6, 7};  // domain [3, 4]
    struct Case { double t; std::vector<double> factors; };
    const Case cases[] = {
        {3.0, {1 / 6.0, 4 / 6.0, 1 / 6.0, 0}},
        {3.5, {1 / 48.0, 23 / 48.0, 23 / 48.0, 1 / 48.0}},
        {4.0, {0, 1 / 6.0, 4 / 6.0, 1 / 6.0}},
    };
    for (const Case& c : cases)
        EXPECT_TRUE(near3(evaluateNurbs(3, knots, points, {}, c.t), combine(points, c.factors), 1e-14)) << c.t;
}

TEST(EvaluateNurbs, RationalQuarterCircleStaysOnTheCircle) {
    const Points points = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    const std::vector<double> knots = {0, 0, 0, 1, 1, 1}, weights = {1, std::numbers::sqrt2 / 2, 1};
    for (int i = 0; i <= 20; ++i)
        EXPECT_NEAR(evaluateNurbs(2, knots, points, weights, i / 20.0).asVector().length(), 1.0, 1e-14);
    const double h = std::numbers::sqrt2 / 2;
    EXPECT_TRUE(near3(evaluateNurbs(2, knots, points, weights, 0.5), {h, h, 0}, 1e-14));
}

TEST(EvaluateNurbs, InvalidDataFallBackToTheFirstPoint) {
    const Points points = {{7, 8, 9}, {1, 1, 1}, {2, 0, 0}};
    struct Case { int degree; std::vector<double> knots, weights; };
    const Case cases[] = {
        {2, {0, 0, 1, 1, 1}, {}},          // one knot short
        {2, {0, 0, 0, 1, 1, 1}, {1, 0, 1}},  // zero weight
        {2, {0, 0, 1, 0, 1, 1}, {}},       // decreasing knots
        {3, {0, 0, 0, 0, 1, 1, 1}, {}},    // too few points for the degree
        {2, {0, 0, 0, 0, 0, 0}, {}},       // empty domain
    };
    for (const Case& c : cases) {
        EXPECT_FALSE(isValidNurbs(c.degree, c.knots, points, c.weights));
        EXPECT_EQ(evaluateNurbs(c.degree, c.knots, points, c.weights, 0.5), points.front());
        EXPECT_TRUE(test::boxNear(nurbsExtents(c.degree, c.knots, points, c.weights), {1, 0, 0}, {7, 8, 9}));
    }
    EXPECT_EQ(evaluateNurbs(1, {0, 1}, {}, {}, 0.5), KcGePoint3d::kOrigin);
}

TEST(NurbsExtents, RefinedExtremesMatchTheExactArcBox) {
    // Two rational quarter circles turned by 10 degrees: the top of the circle (90
    // degrees) falls between samples, where only the refinement can find it.
    const double turn = degreesToRadians(10), h = std::numbers::sqrt2 / 2;
    KcGeMatrix3d rotate = KcGeMatrix3d::rotation(turn, KcGeVector3d::kZAxis);
    Points points = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {-1, 1, 0}, {-1, 0, 0}};
    for (KcGePoint3d& p : points) p.transformBy(rotate);
    const std::vector<double> knots = {0, 0, 0, 1, 1, 2, 2, 2}, weights = {1, h, 1, h, 1};
    Box3d expected = arcExtents({0, 0, 0}, 1, turn, turn + std::numbers::pi, KcGeVector3d::kZAxis);
    for (int samplesPerSpan : {4, 32}) {
        Box3d box = nurbsExtents(2, knots, points, weights, samplesPerSpan);
        EXPECT_TRUE(test::boxNear(box, expected.min(), expected.max(), 1e-9)) << samplesPerSpan;
    }
}

}  // namespace
}  // namespace korva::geom
