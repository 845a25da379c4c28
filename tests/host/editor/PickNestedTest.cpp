// Picks through block references: kcedEntSel gives the top-level reference,
// kcedNEntSelP and kcedNEntSel the innermost entity with its containers
// (innermost first) and the map from its block to the world; attributes are
// their own entities. Also the answers a pick prompt takes: misses, Enter,
// keywords, entity names, and points in the UCS.
#include <gtest/gtest.h>

#include "SelectionScene.h"
#include "editor/Coordinates.h"
#include "editor/SystemVariables.h"

namespace korva {
namespace {

using Handles = std::vector<std::string>;

struct NestedPick {
    int status = 0;
    std::string entity;
    Handles containers;
    KcGeMatrix3d xform;
    KcGePoint3d point;
};

NestedPick nestedPickAt(const KcGePoint3d& p) {
    NestedPick out;
    kcad_name entity;
    kcad_point point = {p.x, p.y, p.z};
    kcad_matrix xform;
    resbuf* containers = nullptr;
    out.status = kcedNEntSelP(nullptr, entity, point, 1, xform, &containers);
    if (out.status != RTNORM) return out;
    out.entity = test::handleOf(entity);
    for (const resbuf* rb = containers; rb; rb = rb->rbnext) {
        EXPECT_EQ(rb->restype, RTENAME);
        out.containers.push_back(test::handleOf(rb->resval.rlname));
    }
    db::releaseResbufs(containers);
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) out.xform(r, c) = xform[r][c];
    }
    out.point = {point[0], point[1], point[2]};
    return out;
}

KcGeMatrix3d placed(double x, double y, double scale) {
    return KcGeMatrix3d::translation({x, y, 0}) * KcGeMatrix3d::scaling(scale);
}

TEST(PickNested, NestedPicksReportTheInnermostEntityItsContainersAndItsTransform) {
    test::UnitTextMeasurer measurer;
    test::ScriptRun run = test::sceneRun();
    const struct {
        const char* intent;
        KcGePoint3d at;
        std::string entity;
        Handles containers;
        KcGeMatrix3d xform;
    } cases[] = {
        {"a line of BOX inside NEST", {12, 40, 0}, "922", {"932", "AC"}, placed(10, 40, 2)},
        {"the circle of BOX inside NEST", {12, 43, 0}, "924", {"932", "AC"}, placed(10, 40, 2)},
        {"the circle of a reference to BOX", {41.5, 1, 0}, "924", {"A8"}, placed(40, 0, 1)},
        {"an attribute is its own entity, without containers", {40.25, 3.25, 0}, "A81", {}, KcGeMatrix3d::kIdentity},
        {"a top-level entity", {2, 0, 0}, "A1", {}, KcGeMatrix3d::kIdentity},
    };
    for (const auto& c : cases) {
        const NestedPick pick = nestedPickAt(c.at);
        ASSERT_EQ(pick.status, RTNORM) << c.intent;
        EXPECT_EQ(pick.entity, c.entity) << c.intent;
        EXPECT_EQ(pick.containers, c.containers) << c.intent;
        EXPECT_TRUE(pick.xform.isEqualTo(c.xform)) << c.intent;
    }
}

// A command that runs one SDK pick and keeps what it returned.
struct PickProbe {
    int status = 0;
    std::string entity;
    KcGePoint3d point;
    kcad_point xform4x3[4] = {};
    Handles containers;
    std::wstring keyword;
    int errnoValue = 0;
};

void registerPickProbes(PickProbe& probe) {
    test::registerTestCommand(L"ENTSELPROBE", 0, [&probe] {
        kcad_name entity;
        kcad_point point;
        kcedInitGet(0, L"Options eXit");
        probe.status = kcedEntSel(L"\nPick one: ", entity, point);
        probe.errnoValue = static_cast<int>(editor::SystemVariables::instance().integer(L"ERRNO"));
        if (probe.status == RTNORM) {
            probe.entity = test::handleOf(entity);
            probe.point = {point[0], point[1], point[2]};
        }
        if (probe.status == RTKWORD) {
            wchar_t typed[32];
            kcedGetInput(typed, 32);
            probe.keyword = typed;
        }
    });
    test::registerTestCommand(L"NENTSELPROBE", 0, [&probe] {
        kcad_name entity;
        kcad_point point;
        resbuf* containers = nullptr;
        probe.status = kcedNEntSel(nullptr, entity, point, probe.xform4x3, &containers);
        if (probe.status == RTNORM) probe.entity = test::handleOf(entity);
        for (const resbuf* rb = containers; rb; rb = rb->rbnext) probe.containers.push_back(test::handleOf(rb->resval.rlname));
        db::releaseResbufs(containers);
    });
}

TEST(PickNested, EntSelGivesTheTopLevelEntityAndTheAnswersItTakes) {
    const struct {
        const char* intent;
        const char* script;
        int status;
        std::string entity;
        int errnoValue;
        std::wstring keyword;
    } cases[] = {
        {"inside a nested reference: the outer reference", "ENTSELPROBE\n12,40\n", RTNORM, "AC", 0, L""},
        {"an attribute: its reference", "ENTSELPROBE\n40.25,3.25\n", RTNORM, "A8", 0, L""},
        {"a miss", "ENTSELPROBE\n25,25\n", RTERROR, "", 7, L""},
        {"Enter", "ENTSELPROBE\n\n", RTERROR, "", 52, L""},
        {"a keyword", "ENTSELPROBE\nx\n", RTKWORD, "", 0, L"eXit"},
        {"an entity name", "ENTSELPROBE\n(handent \"A2\")\n", RTNORM, "A2", 0, L""},
        {"the end of input", "ENTSELPROBE\n", RTCAN, "", 0, L""},
    };
    for (const auto& c : cases) {
        test::UnitTextMeasurer measurer;
        test::ScriptRun run = test::sceneRun();
        editor::SystemVariables::instance().setValue(L"ERRNO", editor::VarValue::ofInteger(editor::VarType::Short, 0));
        PickProbe probe;
        registerPickProbes(probe);
        run.run(c.script);
        EXPECT_EQ(probe.status, c.status) << c.intent;
        EXPECT_EQ(probe.entity, c.entity) << c.intent;
        EXPECT_EQ(probe.errnoValue, c.errnoValue) << c.intent;
        EXPECT_EQ(probe.keyword, c.keyword) << c.intent;
        EXPECT_TRUE(run.outputContains(L"Pick one: ")) << c.intent;
    }
}

TEST(PickNested, APickByNameIsAtTheEntitysFirstPointInTheUcs) {
    test::ScriptRun run = test::sceneRun();
    editor::UcsFrame frame;
    frame.origin = {1, 2, 0};
    editor::setCurrentUcs(run.document(), frame);
    PickProbe probe;
    registerPickProbes(probe);
    run.run("ENTSELPROBE\n(handent \"A2\")\n");
    ASSERT_EQ(probe.status, RTNORM);
    EXPECT_TRUE(probe.point.isEqualTo({9, -2, 0})) << "the centre (10,0) seen from the UCS origin (1,2)";
    run.run("ENTSELPROBE\n1,-2\n");  // UCS (1,-2) is the world point (2,0) on A1
    EXPECT_EQ(probe.entity, "A1");
    EXPECT_TRUE(probe.point.isEqualTo({1, -2, 0})) << "the pick point comes back in the UCS";
}

TEST(PickNested, NEntSelGivesTheTransformAsFourPoints) {
    test::ScriptRun run = test::sceneRun();
    PickProbe probe;
    registerPickProbes(probe);
    run.run("NENTSELPROBE\n12,40\n");
    ASSERT_EQ(probe.status, RTNORM);
    EXPECT_EQ(probe.entity, "922");
    EXPECT_EQ(probe.containers, (Handles{"932", "AC"}));
    const double expected[4][3] = {{2, 0, 0}, {0, 2, 0}, {0, 0, 2}, {10, 40, 0}};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 3; ++j) EXPECT_NEAR(probe.xform4x3[i][j], expected[i][j], 1e-12) << i << "," << j;
    }
}

}  // namespace
}  // namespace korva
