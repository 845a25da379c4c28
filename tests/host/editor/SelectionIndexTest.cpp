// The spatial index behind window selections and picks stays right when
// entities are added, erased or moved, within a command and across commands,
// and answers like a test of every entity on a grid of thousands.
#include <gtest/gtest.h>

#include "SelectionScene.h"
#include "editor/selection/SpatialIndex.h"
#include "kcdbfuncs.h"

namespace korva {
namespace {

using Handles = std::vector<std::string>;

Handles window(double x0, double y0, double x1, double y1) {
    const kcad_point a = {x0, y0, 0}, b = {x1, y1, 0};
    kcad_name set = {0, 0};
    if (kcedSSGet(L"W", a, b, nullptr, set) != RTNORM) return {};
    Handles handles = test::memberHandles(set);
    kcedSSFree(set);
    return handles;
}

// Moves the line A1 by dx with kcdbEntMod.
void moveA1(double dx) {
    kcad_name a1;
    ASSERT_EQ(kcdbHandEnt(L"A1", a1), RTNORM);
    resbuf* list = kcdbEntGet(a1);
    ASSERT_NE(list, nullptr);
    for (resbuf* rb = list; rb; rb = rb->rbnext) {
        if (rb->restype == 10 || rb->restype == 11) rb->resval.rpoint[0] += dx;
    }
    EXPECT_EQ(kcdbEntMod(list), RTNORM);
    db::releaseResbufs(list);
}

void addLine(double x0, double y0, double x1, double y1) {
    db::ResbufChain list;
    list.appendText(0, L"LINE");
    list.appendPoint(10, {x0, y0, 0});
    list.appendPoint(11, {x1, y1, 0});
    resbuf* head = list.release();
    EXPECT_EQ(kcdbEntMake(head), RTNORM);
    db::releaseResbufs(head);
}

TEST(SelectionIndex, ChangesAcrossCommandsAreSeen) {
    test::ScriptRun run = test::sceneRun();
    ASSERT_EQ(window(-1, -1, 5, 1), (Handles{"A1"})) << "builds the index";
    Handles atOldPlace, atNewPlace, added;
    test::registerTestCommand(L"MOVEA1", 0, [] { moveA1(100); });
    test::registerTestCommand(L"ADDLINE", 0, [] { addLine(200, 0, 201, 0); });
    test::registerTestCommand(L"LOOK", 0, [&] {
        atOldPlace = window(-1, -1, 5, 1);
        atNewPlace = window(99, -1, 105, 1);
        added = window(199, -1, 202, 1);
    });
    run.run("MOVEA1\nADDLINE\nLOOK\n");
    EXPECT_EQ(atOldPlace, Handles{});
    EXPECT_EQ(atNewPlace, (Handles{"A1"}));
    EXPECT_EQ(added.size(), 1u);
    kcad_name a1;
    kcdbHandEnt(L"A1", a1);
    ASSERT_EQ(kcdbEntDel(a1), RTNORM);
    EXPECT_EQ(window(99, -1, 105, 1), Handles{}) << "an erased entity is not selected";
}

TEST(SelectionIndex, ChangesWithinOneCommandAreSeenWhereTheyAffectTheAnswer) {
    test::ScriptRun run = test::sceneRun();
    Handles before, afterMove, afterAdd;
    test::registerTestCommand(L"EDITANDLOOK", 0, [&] {
        before = window(-1, -1, 5, 1);
        moveA1(100);
        afterMove = window(-1, -1, 5, 1);
        addLine(0.5, 0.5, 1.5, 0.5);
        afterAdd = window(-1, -1, 5, 1);
    });
    run.run("EDITANDLOOK\n");
    EXPECT_EQ(before, (Handles{"A1"}));
    EXPECT_EQ(afterMove, Handles{}) << "the moved line is no longer where the index saw it";
    EXPECT_EQ(afterAdd.size(), 1u) << "a line added within the command";
}

TEST(SelectionIndex, AGridOfThousandsAnswersLikeTestingEveryEntity) {
    // 60 x 60 short lines, each (i, j) to (i + 0.5, j); windows of several sizes.
    std::string entities;
    for (int i = 0; i < 60; ++i) {
        for (int j = 0; j < 60; ++j) {
            entities += "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 " + std::to_string(i) + "\n20 " + std::to_string(j) +
                        "\n30 0\n11 " + std::to_string(i) + ".5\n21 " + std::to_string(j) + "\n31 0\n";
        }
    }
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::entitiesDrawing(entities));
    const struct {
        double x0, y0, x1, y1;
    } windows[] = {{-1, -1, 61, 61}, {10.2, 3.9, 20.7, 8.1}, {0, 0, 0.5, 0}, {59.9, 59.9, 70, 70}, {30.6, 0, 30.9, 60}};
    for (const auto& w : windows) {
        size_t expected = 0;
        for (int i = 0; i < 60; ++i) {
            for (int j = 0; j < 60; ++j) {
                if (i >= w.x0 && i + 0.5 <= w.x1 && j >= w.y0 && j <= w.y1) ++expected;
            }
        }
        EXPECT_EQ(window(w.x0, w.y0, w.x1, w.y1).size(), expected) << w.x0 << "," << w.y0 << " " << w.x1 << "," << w.y1;
    }
}

}  // namespace
}  // namespace korva
