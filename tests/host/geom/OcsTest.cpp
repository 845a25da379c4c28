// The arbitrary-axis algorithm on known normals, on both sides of the 1/64 switch,
// and the OCS <-> WCS conversions it drives.
#include <gtest/gtest.h>

#include <cmath>

#include "GeomTestSupport.h"
#include "geom/Ocs.h"

namespace korva::geom {
namespace {

using test::near3;

TEST(Ocs, ArbitraryXAxisOfKnownNormals) {
    const double justInside = 0.015, justOutside = 0.02;  // the switch is at 1/64 = 0.015625
    struct Case { KcGeVector3d normal, expectedX; };
    const Case cases[] = {
        {{0, 0, 1}, {1, 0, 0}},
        {{0, 0, -1}, {-1, 0, 0}},
        {{0, 0, 7}, {1, 0, 0}},  // length does not matter
        {{1, 0, 0}, {0, 1, 0}},   // world z x N
        {{0, 1, 0}, {-1, 0, 0}},
        {{justInside, 0, 1}, KcGeVector3d(1, 0, -justInside).normal()},  // world y x N
        {{justOutside, 0, 1}, {0, 1, 0}},                                  // world z x N
        {{0, 0, 0}, {1, 0, 0}},  // no normal: the default extrusion
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(test::describe(c.normal));
        EXPECT_TRUE(near3(arbitraryXAxis(c.normal), c.expectedX, 1e-12));
        OcsAxes axes = ocsAxes(c.normal);
        EXPECT_TRUE(near3(axes.x.crossProduct(axes.y), axes.z, 1e-12)) << "right-handed and orthonormal";
    }
}

TEST(Ocs, ConvertsPointsAndVectors) {
    KcGeVector3d down(0, 0, -1);
    EXPECT_TRUE(near3(ocsToWcs(KcGePoint3d(2, 3, 5), down), {-2, 3, -5}));
    EXPECT_TRUE(near3(ocsToWcs(KcGeVector3d(1, 0, 0), down), {-1, 0, 0}));
    KcGeVector3d tilted(1, 2, -2);
    EXPECT_TRUE(near3(ocsToWcs(KcGePoint3d(0, 0, 6), tilted), {2, 4, -4}));  // elevation along N
    KcGePoint3d p(1.5, -7, 3.25);
    EXPECT_TRUE(near3(wcsToOcs(ocsToWcs(p, tilted), tilted), p, 1e-12));
    KcGeVector3d v(0.5, 2, -1);
    EXPECT_TRUE(near3(ocsToWcs(wcsToOcs(v, tilted), tilted), v, 1e-12));
}

}  // namespace
}  // namespace korva::geom
