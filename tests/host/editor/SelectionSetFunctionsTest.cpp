// The selection-set functions: creation, order without duplicates, deletion
// moving later members down, membership, freeing, invalid and forged names,
// the limit of open sets, and the release of sets a command leaves open.
#include <gtest/gtest.h>

#include "SelectionScene.h"
#include "editor/selection/SelectionSets.h"
#include "kcdbfuncs.h"

namespace korva {
namespace {

using Handles = std::vector<std::string>;

struct Names {
    kcad_name a1, a2, a3;
    Names() {
        kcdbHandEnt(L"A1", a1);
        kcdbHandEnt(L"A2", a2);
        kcdbHandEnt(L"A3", a3);
    }
};

TEST(SelectionSetFunctions, SetsKeepInsertionOrderWithoutDuplicates) {
    test::ScriptRun run = test::sceneRun();
    Names n;
    kcad_name set;
    ASSERT_EQ(kcedSSAdd(nullptr, nullptr, set), RTNORM) << "both null: a new empty set";
    Kcad::Int32 length = -1;
    EXPECT_EQ(kcedSSLength(set, &length), RTNORM);
    EXPECT_EQ(length, 0);
    kcad_name same;
    for (const auto* name : {n.a2, n.a1, n.a2, n.a3}) {
        ASSERT_EQ(kcedSSAdd(name, set, same), RTNORM);
        EXPECT_EQ(same[0], set[0]);
        EXPECT_EQ(same[1], set[1]);
    }
    EXPECT_EQ(test::memberHandles(set), (Handles{"A2", "A1", "A3"})) << "A2 stays at its first place";
    EXPECT_EQ(kcedSSMemb(n.a1, set), RTNORM);
    kcad_name entity;
    EXPECT_EQ(kcedSSName(set, 3, entity), RTERROR);
    EXPECT_EQ(kcedSSName(set, -1, entity), RTERROR);
    EXPECT_EQ(kcedSSFree(set), RTNORM);
}

TEST(SelectionSetFunctions, DeletingMovesLaterMembersDownOnePlace) {
    test::ScriptRun run = test::sceneRun();
    Names n;
    kcad_name set, ignored;
    ASSERT_EQ(kcedSSAdd(n.a1, nullptr, set), RTNORM) << "a new set holding A1";
    kcedSSAdd(n.a2, set, ignored);
    kcedSSAdd(n.a3, set, ignored);
    ASSERT_EQ(kcedSSDel(n.a2, set), RTNORM);
    kcad_name second;
    ASSERT_EQ(kcedSSName(set, 1, second), RTNORM);
    EXPECT_EQ(test::handleOf(second), "A3");
    EXPECT_EQ(kcedSSMemb(n.a2, set), RTERROR);
    EXPECT_EQ(kcedSSDel(n.a2, set), RTERROR) << "no longer a member";
    ASSERT_EQ(kcedSSAdd(n.a2, set, ignored), RTNORM);
    EXPECT_EQ(test::memberHandles(set), (Handles{"A1", "A3", "A2"})) << "added again at the end";
    kcedSSFree(set);
}

TEST(SelectionSetFunctions, LargeSetsFindMembersAndDeleteInOrder) {
    test::ScriptRun run = test::sceneRun();
    kcad_name set;
    ASSERT_EQ(kcedSSGet(L"X", nullptr, nullptr, nullptr, set), RTNORM);
    Handles expected = test::memberHandles(set);
    ASSERT_EQ(expected.size(), 12u);
    // Past a few dozen members lookups go through an index; deleting must keep it right.
    Names n;
    kcad_name ignored;
    EXPECT_EQ(kcedSSAdd(n.a1, set, ignored), RTNORM);
    EXPECT_EQ(test::memberHandles(set), expected);
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(kcedSSDel(n.a1, set), RTNORM);
        EXPECT_EQ(kcedSSMemb(n.a1, set), RTERROR);
        ASSERT_EQ(kcedSSAdd(n.a1, set, ignored), RTNORM);
    }
    expected.erase(expected.begin());
    expected.push_back("A1");
    EXPECT_EQ(test::memberHandles(set), expected);
    kcedSSFree(set);
}

TEST(SelectionSetFunctions, InvalidNamesAreRefusedAndChangeNothing) {
    test::ScriptRun run = test::sceneRun();
    Names n;
    kcad_name set, ignored;
    ASSERT_EQ(kcedSSAdd(n.a1, nullptr, set), RTNORM);
    Kcad::Int32 length = 0;
    const kcad_name forged = {editor::SelectionSets::kSetNameMarker, set[1] + 1000};
    const kcad_name zero = {0, 0};
    EXPECT_EQ(kcedSSLength(forged, &length), RTERROR);
    EXPECT_EQ(kcedSSLength(n.a1, &length), RTERROR) << "an entity name is no set name";
    EXPECT_EQ(kcedSSLength(set, nullptr), RTERROR);
    EXPECT_EQ(kcedSSAdd(set, set, ignored), RTERROR) << "a set name is no entity name";
    EXPECT_EQ(kcedSSAdd(forged, set, ignored), RTERROR);
    EXPECT_EQ(kcedSSAdd(n.a2, forged, ignored), RTERROR);
    EXPECT_EQ(kcedSSAdd(nullptr, set, ignored), RTERROR) << "nothing to add to an existing set";
    EXPECT_EQ(kcedSSDel(zero, set), RTERROR);
    EXPECT_EQ(test::memberHandles(set), (Handles{"A1"}));
    EXPECT_EQ(kcedSSFree(set), RTNORM);
    EXPECT_EQ(kcedSSFree(set), RTERROR) << "freed already";
    EXPECT_EQ(kcedSSLength(set, &length), RTERROR);
    EXPECT_EQ(kcedSSAdd(n.a1, set, ignored), RTERROR);

    ASSERT_EQ(kcdbEntDel(n.a3), RTNORM);
    EXPECT_EQ(kcedSSAdd(n.a3, nullptr, ignored), RTERROR) << "an erased entity";
}

TEST(SelectionSetFunctions, AtMost128SetsAreOpen) {
    test::ScriptRun run = test::sceneRun();
    std::vector<std::array<int64_t, 2>> made;
    const size_t before = editor::SelectionSets::instance().openCount();
    while (true) {
        kcad_name set;
        if (kcedSSAdd(nullptr, nullptr, set) != RTNORM) break;
        made.push_back({set[0], set[1]});
        ASSERT_LE(made.size(), 200u);
    }
    EXPECT_EQ(before + made.size(), editor::SelectionSets::kMaxOpen);
    kcad_name more;
    EXPECT_EQ(kcedSSGet(L"X", nullptr, nullptr, nullptr, more), RTERROR) << "selections cannot make one either";
    EXPECT_EQ(kcedSSFree(made.back().data()), RTNORM);
    EXPECT_EQ(kcedSSGet(L"X", nullptr, nullptr, nullptr, more), RTNORM) << "freeing one makes room";
    made.back() = {more[0], more[1]};
    for (auto& name : made) kcedSSFree(name.data());
    EXPECT_EQ(editor::SelectionSets::instance().openCount(), before);
}

TEST(SelectionSetFunctions, ACommandsLeftoverSetsAreReleasedAndReported) {
    test::ScriptRun run = test::sceneRun();
    kcad_name leftover = {0, 0};
    test::registerTestCommand(L"LEAKSET", 0, [&] { kcedSSGet(L"X", nullptr, nullptr, nullptr, leftover); });
    kcad_name kept;
    ASSERT_EQ(kcedSSGet(L"X", nullptr, nullptr, nullptr, kept), RTNORM) << "made at the command prompt";
    editor::SelectionSets::setReportLeaks(true);
    testing::internal::CaptureStderr();
    run.run("LEAKSET\n");
    const std::string report = testing::internal::GetCapturedStderr();
    editor::SelectionSets::setReportLeaks(false);
    Kcad::Int32 length = 0;
    EXPECT_EQ(kcedSSLength(leftover, &length), RTERROR) << "released when LEAKSET ended";
    EXPECT_NE(report.find("LEAKSET left selection set"), std::string::npos) << report;
    EXPECT_EQ(kcedSSLength(kept, &length), RTNORM) << "a set made outside commands stays";
    EXPECT_EQ(kcedSSFree(kept), RTNORM);
}

}  // namespace
}  // namespace korva
