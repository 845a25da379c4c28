// MOVE, COPY, ROTATE, SCALE, MIRROR and ERASE as scripts on a line and a
// circle, checked against points transformed by hand; MIRROR "Y" keeping
// names and handles; MIRRTEXT; objects on locked layers left alone.
#include <gtest/gtest.h>

#include <functional>

#include "DrawTestSupport.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::drawedit::expectAngleNear;
using test::drawedit::expectCleanAudit;
using test::drawedit::expectPointNear;
using test::drawedit::handleText;
using test::drawedit::modelSpaceEntities;
using test::drawedit::Opened;

constexpr double kPi = 3.14159265358979323846;
constexpr const char* kShapes = "LINE\n0,0\n10,0\n\nCIRCLE\n5,5\n1\n";

// A point under an affine map given as a function (the test's own arithmetic).
using Map = std::function<KcGePoint3d(const KcGePoint3d&)>;

void expectShapes(const KcDbObjectId line, const KcDbObjectId circle, const Map& map, double radius, const char* what) {
    Opened<KcDbLine> l(line);
    Opened<KcDbCircle> c(circle);
    ASSERT_TRUE(l && c) << what;
    expectPointNear(l->startPoint(), map({0, 0, 0}), what);
    expectPointNear(l->endPoint(), map({10, 0, 0}), what);
    expectPointNear(c->center(), map({5, 5, 0}), what);
    EXPECT_NEAR(c->radius(), radius, 1e-9) << what;
}

TEST(EditCommands, TransformTheSelectionInPlace) {
    const struct {
        const char* script;
        Map map;
        double radius;
    } cases[] = {
        {"MOVE\nALL\n\n0,0\n5,5\n", [](const KcGePoint3d& p) { return KcGePoint3d(p.x + 5, p.y + 5, p.z); }, 1},
        {"MOVE\nALL\n\nD\n3,4\n", [](const KcGePoint3d& p) { return KcGePoint3d(p.x + 3, p.y + 4, p.z); }, 1},
        {"MOVE\nALL\n\n2,3\n\n", [](const KcGePoint3d& p) { return KcGePoint3d(p.x + 2, p.y + 3, p.z); }, 1},
        {"ROTATE\nALL\n\n0,0\n90\n", [](const KcGePoint3d& p) { return KcGePoint3d(-p.y, p.x, p.z); }, 1},
        {"ROTATE\nALL\n\n5,0\nR\n0\n180\n", [](const KcGePoint3d& p) { return KcGePoint3d(10 - p.x, -p.y, p.z); }, 1},
        {"SCALE\nALL\n\n0,0\n2\n", [](const KcGePoint3d& p) { return KcGePoint3d(2 * p.x, 2 * p.y, p.z); }, 2},
        {"SCALE\nALL\n\n10,0\nR\n4\n2\n",
         [](const KcGePoint3d& p) { return KcGePoint3d(10 + (p.x - 10) / 2, p.y / 2, p.z); }, 0.5},
        {"MIRROR\nALL\n\n0,-1\n10,-1\nY\n", [](const KcGePoint3d& p) { return KcGePoint3d(p.x, -2 - p.y, p.z); }, 1},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        ASSERT_TRUE(run.run(std::string(kShapes) + c.script));
        const auto ids = modelSpaceEntities(run);
        ASSERT_EQ(ids.size(), 2u) << c.script;
        expectShapes(ids[0], ids[1], c.map, c.radius, c.script);
        expectCleanAudit(run);
    }
}

TEST(EditCommands, CopiesJoinTheSpaceAndTheSourcesStay) {
    const Map same = [](const KcGePoint3d& p) { return p; };
    const struct {
        const char* script;
        std::vector<Map> copies;
        double radius;
    } cases[] = {
        {"COPY\nALL\n\n0,0\n0,20\n0,40\n\n",
         {[](const KcGePoint3d& p) { return KcGePoint3d(p.x, p.y + 20, p.z); },
          [](const KcGePoint3d& p) { return KcGePoint3d(p.x, p.y + 40, p.z); }},
         1},
        {"COPY\nALL\n\n0,0\n0,20\n0,40\nU\n\n", {[](const KcGePoint3d& p) { return KcGePoint3d(p.x, p.y + 20, p.z); }}, 1},
        {"ROTATE\nALL\n\n0,0\nC\n90\n", {[](const KcGePoint3d& p) { return KcGePoint3d(-p.y, p.x, p.z); }}, 1},
        {"SCALE\nALL\n\n0,0\nC\n3\n", {[](const KcGePoint3d& p) { return KcGePoint3d(3 * p.x, 3 * p.y, p.z); }}, 3},
        {"MIRROR\nALL\n\n0,0\n0,10\n\n", {[](const KcGePoint3d& p) { return KcGePoint3d(-p.x, p.y, p.z); }}, 1},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        ASSERT_TRUE(run.run(std::string(kShapes) + c.script));
        const auto ids = modelSpaceEntities(run);
        ASSERT_EQ(ids.size(), 2 + 2 * c.copies.size()) << c.script;
        expectShapes(ids[0], ids[1], same, 1, c.script);
        for (size_t i = 0; i < c.copies.size(); ++i) {
            expectShapes(ids[2 + 2 * i], ids[3 + 2 * i], c.copies[i], i == 0 ? c.radius : 1, c.script);
        }
        expectCleanAudit(run);
    }
}

TEST(MirrorCommand, ErasingTheSourceKeepsNamesAndHandles) {
    ScriptRun run;
    ASSERT_TRUE(run.run(kShapes));
    const auto before = modelSpaceEntities(run);
    std::vector<std::wstring> handles;
    for (KcDbObjectId id : before) handles.push_back(handleText(id));
    ASSERT_TRUE(run.run("MIRROR\nALL\n\n0,0\n0,10\nY\n"));
    const auto after = modelSpaceEntities(run);
    ASSERT_EQ(after.size(), before.size());
    for (size_t i = 0; i < after.size(); ++i) {
        EXPECT_EQ(after[i], before[i]) << "the same object";
        EXPECT_EQ(handleText(after[i]), handles[i]);
    }
    Opened<KcDbCircle> circle(after[1]);
    expectPointNear(circle->center(), {-5, 5, 0}, "mirrored in place");
}

TEST(MirrorCommand, TheModulesScriptedFormTakesASelectionSet) {
    ScriptRun run;
    ASSERT_TRUE(run.run(kShapes));
    const auto before = modelSpaceEntities(run);
    kcad_name set = {0, 0}, entity = {0, 0};
    for (KcDbObjectId id : before) {
        ASSERT_EQ(kcdbGetKdsName(entity, id), Kcad::eOk);
        ASSERT_EQ(kcedSSAdd(entity, set[0] == 0 && set[1] == 0 ? nullptr : set, set), RTNORM);
    }
    const double p1[2] = {0, 0}, p2[2] = {0, 10};
    EXPECT_EQ(kcedCommand(RTSTR, L"_.mirror", RTPICKS, set, RTSTR, L"", RTPOINT, p1, RTPOINT, p2, RTSTR, L"_Y", RTNONE),
              RTNORM);
    EXPECT_EQ(modelSpaceEntities(run), before) << "no copies: the same objects";
    {
        Opened<KcDbLine> line(before[0]);
        expectPointNear(line->endPoint(), {-10, 0, 0}, "mirrored about the Y axis");
    }
    EXPECT_EQ(kcedCommand(RTSTR, L"_.erase", RTPICKS, set, RTSTR, L"", RTNONE), RTNORM);
    EXPECT_TRUE(modelSpaceEntities(run).empty());
    kcedSSFree(set);
}

TEST(MirrorCommand, MirrtextDecidesWhetherTextsStayReadable) {
    const struct {
        int mirrtext;
        const char* line;  // the mirror line
        KcGePoint3d position;
        bool backwards, upsideDown;
    } cases[] = {
        {0, "10,0\n10,10", {20, 0, 0}, false, false},
        {1, "10,0\n10,10", {20, 0, 0}, true, false},
        {0, "0,10\n10,10", {0, 20, 0}, false, false},
        {1, "0,10\n10,10", {0, 20, 0}, false, true},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        editor::SystemVariables::instance().setValue(L"MIRRTEXT",
                                                     editor::VarValue::ofInteger(editor::VarType::Short, c.mirrtext));
        ASSERT_TRUE(run.run(std::string("-TEXT\n0,0\n2\n0\nABC\nMIRROR\nALL\n\n") + c.line + "\nY\n"));
        Opened<KcDbText> text(modelSpaceEntities(run).at(0));
        ASSERT_TRUE(text);
        expectPointNear(text->position(), c.position, c.line);
        expectAngleNear(text->rotation(), 0.0, c.line);
        EXPECT_EQ(text->isMirroredInX(), c.backwards) << c.mirrtext << " " << c.line;
        EXPECT_EQ(text->isMirroredInY(), c.upsideDown) << c.mirrtext << " " << c.line;
    }
}

TEST(MirrorCommand, AttributesOfAMirroredReferenceFollowMirrtext) {
    ScriptRun run;
    editor::SystemVariables::instance().setValue(L"MIRRTEXT", editor::VarValue::ofInteger(editor::VarType::Short, 1));
    ASSERT_TRUE(run.run("-ATTDEF\n\nTAG\nTag\nv\n0,0\n1\n0\n-BLOCK\nT\n0,0\nALL\n\n-INSERT\nT\n5,0\n\n\n\n\n"
                        "MIRROR\nALL\n\n0,0\n0,10\nN\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 2u);
    Opened<KcDbBlockReference> copy(ids[1]);
    std::unique_ptr<KcDbObjectIterator> attributes(copy->attributeIterator());
    attributes->start();
    ASSERT_FALSE(attributes->done());
    Opened<KcDbAttribute> attribute(attributes->objectId());
    expectPointNear(attribute->position(), {-5, 0, 0}, "mirrored insertion");
    EXPECT_TRUE(attribute->isMirroredInX());
}

TEST(EraseCommand, ErasesTheSelectionButNotObjectsOnLockedLayers) {
    ScriptRun run;
    KcDbLayerTable* layers = nullptr;
    ASSERT_EQ(run.document().database().getLayerTable(layers, KcDb::kForWrite), Kcad::eOk);
    auto* layer = new KcDbLayerTableRecord();
    layer->setName(L"FIXED");
    ASSERT_EQ(layers->add(layer), Kcad::eOk);
    layer->close();
    layers->close();
    ASSERT_TRUE(run.run(std::string(kShapes) + "CLAYER\nFIXED\nPOINT\n1,1\nCLAYER\n0\n"));
    {
        KcDbLayerTableRecord* fixed = nullptr;
        KcDbLayerTable* table = nullptr;
        run.document().database().getLayerTable(table, KcDb::kForRead);
        ASSERT_EQ(table->getAt(L"FIXED", fixed, KcDb::kForWrite), Kcad::eOk);
        fixed->setIsLocked(true);
        fixed->close();
        table->close();
    }
    ASSERT_TRUE(run.run("MOVE\nALL\n\n0,0\n1,0\nERASE\nALL\n\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u) << "the point on the locked layer stays";
    Opened<KcDbPoint> point(ids[0]);
    ASSERT_TRUE(point);
    expectPointNear(point->position(), {1, 1, 0}, "not moved either");
    EXPECT_TRUE(run.outputContains(L"1 was on a locked layer."));
}

}  // namespace
}  // namespace korva
