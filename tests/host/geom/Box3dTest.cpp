// Bounding boxes: emptiness, growth, transformation and the overlap tests.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "GeomTestSupport.h"
#include "geom/Box3d.h"

namespace korva::geom {
namespace {

using test::boxNear;

TEST(Box3d, StartsEmptyAndGrows) {
    Box3d box;
    EXPECT_TRUE(box.isEmpty());
    EXPECT_FALSE(box.contains(KcGePoint3d::kOrigin));
    box.add(Box3d());
    EXPECT_TRUE(box.isEmpty());
    box.add(KcGePoint3d(1, 2, 3));
    EXPECT_TRUE(boxNear(box, {1, 2, 3}, {1, 2, 3}));
    EXPECT_TRUE(box.contains({1, 2, 3}));
    box.add(Box3d({-1, 5, 0}, {0, 4, 9}));
    EXPECT_TRUE(boxNear(box, {-1, 2, 0}, {1, 5, 9}));
}

TEST(Box3d, TransformedByEnclosesRotatedCube) {
    Box3d cube({0, 0, 0}, {1, 1, 1});
    double h = std::numbers::sqrt2 / 2;
    Box3d turned = cube.transformedBy(KcGeMatrix3d::rotation(std::numbers::pi / 4, KcGeVector3d::kZAxis));
    EXPECT_TRUE(boxNear(turned, {-h, 0, 0}, {h, 2 * h, 1}, 1e-12));
    EXPECT_TRUE(Box3d().transformedBy(KcGeMatrix3d::translation({1, 1, 1})).isEmpty());
}

TEST(Box3d, IntersectionIncludesTouchingBoxes) {
    Box3d unit({0, 0, 0}, {1, 1, 1});
    struct Case { Box3d other; bool intersects; };
    const Case cases[] = {
        {Box3d({1, 1, 1}, {2, 2, 2}), true},           // shares a corner
        {Box3d({0.2, 0.2, 0.2}, {0.3, 0.3, 0.3}), true},  // inside
        {Box3d({-1, -1, -1}, {3, 3, 3}), true},        // around
        {Box3d({0, 0, 1.01}, {1, 1, 2}), false},       // apart in z only
        {Box3d(), false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(unit.intersects(c.other), c.intersects);
        EXPECT_EQ(c.other.intersects(unit), c.intersects);
    }
}

TEST(Box3d, ExpandedByMovesEverySide) {
    Box3d box({0, 0, 0}, {2, 2, 2});
    EXPECT_TRUE(boxNear(box.expandedBy(0.5), {-0.5, -0.5, -0.5}, {2.5, 2.5, 2.5}));
    EXPECT_TRUE(boxNear(box.expandedBy(-1), {1, 1, 1}, {1, 1, 1}));
    EXPECT_TRUE(box.expandedBy(-1.5).isEmpty());
    EXPECT_TRUE(boxNear(box.expandedBy(-1.5).add(KcGePoint3d(5, 5, 5)), {5, 5, 5}, {5, 5, 5}));
    EXPECT_TRUE(Box3d().expandedBy(10).isEmpty());
}

}  // namespace
}  // namespace korva::geom
