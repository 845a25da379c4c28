// kcedSSGet's mode strings given with their arguments: windows and crossings by
// two points, fences and polygons by point lists, previous, last and all, in
// the current UCS; and modes the host does not know.
#include <gtest/gtest.h>

#include "SelectionScene.h"
#include "editor/Coordinates.h"

namespace korva {
namespace {

using Handles = std::vector<std::string>;

// A point list as the mode arguments of "F", "WP" and "CP" take it.
class PointList {
public:
    explicit PointList(std::initializer_list<KcGePoint3d> points) {
        for (const KcGePoint3d& p : points) chain_.appendPoint(RTPOINT, p);
        head_ = chain_.release();
    }
    ~PointList() { db::releaseResbufs(head_); }
    PointList(const PointList&) = delete;
    PointList& operator=(const PointList&) = delete;
    const resbuf* list() const { return head_; }

private:
    db::ResbufChain chain_;
    resbuf* head_ = nullptr;
};

Handles select(const wchar_t* mode, const void* arg1, const void* arg2, int expectedStatus, const char* intent) {
    kcad_name set = {0, 0};
    const int status = kcedSSGet(mode, arg1, arg2, nullptr, set);
    EXPECT_EQ(status, expectedStatus) << intent;
    Handles handles = test::memberHandles(set);
    if (status == RTNORM) kcedSSFree(set);
    return handles;
}

TEST(SelectionModes, ModesWithArgumentsSelectWithoutPrompting) {
    test::ScriptRun run = test::sceneRun();
    const kcad_point a = {-1, -1, 0}, b = {5, 1, 0}, c = {3, -0.5, 0}, d = {9.5, 0.5, 0};
    const PointList fence({{2, -1, 0}, {2, 1, 0}, {10, -2, 0}, {10, 2, 0}});
    const PointList square({{-1, -1, 0}, {5, -1, 0}, {5, 1, 0}, {-1, 1, 0}});
    const PointList triangle({{9.5, -3, 0}, {12, -3, 0}, {12, 3, 0}});
    const PointList notPoints({{0, 0, 0}});
    EXPECT_EQ(select(L"W", a, b, RTNORM, "window"), (Handles{"A1"}));
    EXPECT_EQ(select(L"_w", a, b, RTNORM, "a global, lower-case mode"), (Handles{"A1"}));
    EXPECT_EQ(select(L"C", c, d, RTNORM, "crossing"), (Handles{"A1", "A2"}));
    EXPECT_EQ(select(L"F", fence.list(), nullptr, RTNORM, "fence"), (Handles{"A1", "A2"}));
    EXPECT_EQ(select(L"WP", square.list(), nullptr, RTNORM, "window polygon"), (Handles{"A1"}));
    EXPECT_EQ(select(L"CP", triangle.list(), nullptr, RTNORM, "crossing polygon"), (Handles{"A2"}));
    EXPECT_EQ(select(L"P", nullptr, nullptr, RTNORM, "previous: the crossing polygon's"), (Handles{"A2"}));
    EXPECT_EQ(select(L"L", nullptr, nullptr, RTNORM, "last"), (Handles{"AC"}));
    EXPECT_EQ(select(L"X:E:N", nullptr, nullptr, RTNORM, "ignored options").size(), 12u);
    EXPECT_TRUE(run.output().empty()) << "no prompt";
}

TEST(SelectionModes, BadModesAndArgumentsGiveErrors) {
    test::ScriptRun run = test::sceneRun();
    const kcad_point a = {-1, -1, 0};
    EXPECT_TRUE(select(L"Q", nullptr, nullptr, RTERROR, "an unknown mode").empty());
    EXPECT_TRUE(select(L":Z", nullptr, nullptr, RTERROR, "an unknown option").empty());
    EXPECT_TRUE(select(L"W", a, nullptr, RTERROR, "a window lacking a corner").empty());
    EXPECT_TRUE(select(L"F", nullptr, nullptr, RTERROR, "a fence without points").empty());
    kcad_name set;
    EXPECT_EQ(kcedSSGet(L"X", nullptr, nullptr, nullptr, nullptr), RTERROR) << "nowhere to put the name";
    EXPECT_EQ(kcedSSGet(L"W", a, a, nullptr, set), RTERROR) << "an empty window selects nothing";
}

TEST(SelectionModes, PointsAreInTheCurrentUcs) {
    test::ScriptRun run = test::sceneRun();
    // A UCS whose origin is the world point (100, 0) and whose x axis points along world y.
    editor::UcsFrame frame;
    frame.origin = {100, 0, 0};
    frame.xAxis = {0, 1, 0};
    frame.yAxis = {-1, 0, 0};
    editor::setCurrentUcs(run.document(), frame);
    // World (-1,-1) and (5,1) are UCS (-1,101) and (1,95).
    const kcad_point a = {-1, 101, 0}, b = {1, 95, 0};
    EXPECT_EQ(select(L"W", a, b, RTNORM, "window in the UCS"), (Handles{"A1"}));
}

TEST(SelectionModes, XTakesPaperSpaceEntitiesButInteractiveSelectionStaysInItsSpace) {
    const std::string text = test::entitiesDrawing(R"(
0 LINE
5 B1
100 AcDbEntity
8 0
100 AcDbLine
10 0
20 0
30 0
11 4
21 0
31 0
0 LINE
5 B2
100 AcDbEntity
67 1
8 0
100 AcDbLine
10 0
20 0
30 0
11 4
21 0
31 0
)");
    test::ScriptRun run = test::ScriptRun::fromDxfText(text);
    EXPECT_EQ(select(L"X", nullptr, nullptr, RTNORM, "all layouts"), (Handles{"B1", "B2"}));
    const kcad_point a = {-1, -1, 0}, b = {5, 1, 0};
    EXPECT_EQ(select(L"W", a, b, RTNORM, "model space"), (Handles{"B1"}));
    run.document().setCvport(1);
    EXPECT_EQ(select(L"W", a, b, RTNORM, "paper space"), (Handles{"B2"}));
}

}  // namespace
}  // namespace korva
