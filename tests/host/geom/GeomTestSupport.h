// Near-equality assertions for points, vectors and boxes, printing both values on failure.
#pragma once

#include <gtest/gtest.h>

#include <sstream>

#include "geom/Box3d.h"
#include "kcge.h"

namespace korva::geom::test {

template <class Triple>
std::string describe(const Triple& v) {
    std::ostringstream out;
    out.precision(17);
    out << "(" << v.x << ", " << v.y << ", " << v.z << ")";
    return out.str();
}

template <class Triple>
::testing::AssertionResult near3(const Triple& actual, const Triple& expected, double tolerance = 1e-9) {
    if ((actual - expected).length() <= tolerance) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << describe(actual) << " is not within " << tolerance << " of "
                                         << describe(expected);
}

inline ::testing::AssertionResult boxNear(const Box3d& actual, const KcGePoint3d& min, const KcGePoint3d& max,
                                          double tolerance = 1e-9) {
    if (actual.isEmpty()) return ::testing::AssertionFailure() << "box is empty";
    auto lower = near3(actual.min(), min, tolerance);
    return lower ? near3(actual.max(), max, tolerance) : lower;
}

}  // namespace korva::geom::test
