// -LAYOUT, MVIEW, MSPACE and PSPACE through scripts: layouts and viewports are
// checked on the records, then saved, read back by the project's reader and
// opened with the independent reader.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "TestFiles.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"
#include "db/objects/DictionaryEntries.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "editor/SystemVariables.h"

namespace korva {
namespace {

constexpr double kTolerance = 1e-9;

// A LINE from (0,0) to (200,100): model space extents centred on (100,50).
const char* const kModelLine =
    "  0\nLINE\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n200.0\n"
    " 21\n100.0\n 31\n0.0\n";

const db::ObjectRecord* layoutNamed(const db::Drawing& drawing, std::string_view name) {
    for (const db::ObjectRecord* object : drawing.objects) {
        if (!object->erased && object->type == db::Type::Layout && db::fieldText(*object, "AcDbLayout", 1) == name) {
            return object;
        }
    }
    return nullptr;
}

std::vector<const db::ObjectRecord*> viewports(const db::ObjectRecord* block) {
    std::vector<const db::ObjectRecord*> found;
    if (!block || !block->container) return found;
    for (const db::ObjectRecord* entity : block->container->members) {
        if (!entity->erased && entity->type == db::Type::Viewport) found.push_back(entity);
    }
    return found;
}

int64_t tilemode() { return editor::SystemVariables::instance().integer(L"TILEMODE"); }
int64_t cvport() { return editor::SystemVariables::instance().integer(L"CVPORT"); }

// New adds a LAYOUT to ACAD_LAYOUT with the next tab and its own "*Paper_Space<n>" block.
TEST(LayoutCommand, NewLayoutHasItsBlockAndDictionaryEntry) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("-LAYOUT\nN\nPlan\n"));
    db::Drawing& drawing = run.drawing();
    const db::ObjectRecord* layout = layoutNamed(drawing, "Plan");
    ASSERT_TRUE(layout);
    EXPECT_EQ(db::fieldInteger(*layout, "AcDbLayout", 71), 2);  // after Layout1
    const db::ObjectRecord* block = drawing.findByHandle(db::fieldHandle(*layout, "AcDbLayout", 330));
    ASSERT_TRUE(block);
    EXPECT_EQ(db::recordName(*block), "*Paper_Space0");
    EXPECT_EQ(db::fieldHandle(*block, "AcDbBlockTableRecord", 340), layout->handle);
    ASSERT_TRUE(block->container && block->container->begin && block->container->end);
    db::Handle layoutDictionary = 0;
    for (const db::DictionaryEntry& entry : db::dictionaryEntries(*drawing.rootDictionary())) {
        if (entry.key == "ACAD_LAYOUT") layoutDictionary = entry.handle;
    }
    ASSERT_TRUE(layout->owner);
    EXPECT_EQ(layout->owner->handle, layoutDictionary);
    bool listed = false;
    for (const db::DictionaryEntry& entry : db::dictionaryEntries(*layout->owner)) listed |= entry.key == "Plan";
    EXPECT_TRUE(listed);
    const auto reactors = db::applicationGroupHandles(*layout, "{ACAD_REACTORS");
    ASSERT_EQ(reactors.size(), 1u);
    EXPECT_EQ(reactors.front(), layout->owner->handle);
    EXPECT_EQ(tilemode(), 1);  // New does not switch to it
}

// Set makes the layout the active paper space: its block becomes "*Paper_Space".
TEST(LayoutCommand, SetSwapsTheActivePaperSpace) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("-LAYOUT\nN\nPlan\n-LAYOUT\nS\nplan\n"));
    db::Drawing& drawing = run.drawing();
    const db::ObjectRecord* layout = layoutNamed(drawing, "Plan");
    ASSERT_TRUE(layout);
    EXPECT_EQ(drawing.paperSpace()->handle, db::fieldHandle(*layout, "AcDbLayout", 330));
    EXPECT_EQ(db::recordName(*drawing.paperSpace()), "*Paper_Space");
    const db::ObjectRecord* old = layoutNamed(drawing, "Layout1");
    EXPECT_EQ(db::recordName(*drawing.findByHandle(db::fieldHandle(*old, "AcDbLayout", 330))), "*Paper_Space0");
    EXPECT_EQ(tilemode(), 0);
    EXPECT_EQ(cvport(), 1);
    ASSERT_TRUE(run.run("-LAYOUT\nS\nModel\n"));
    EXPECT_EQ(tilemode(), 1);
    EXPECT_EQ(cvport(), 2);
    ASSERT_TRUE(run.run("-LAYOUT\nS\nNOSUCH\n"));
    EXPECT_TRUE(run.outputContains(L"Layout \"NOSUCH\" not found."));
}

// MVIEW puts a viewport of the given corners in the layout, looking at model space's extents.
TEST(LayoutCommand, MviewCreatesAViewportOfModelExtents) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kModelLine));
    ASSERT_TRUE(run.run("-LAYOUT\nS\nLayout1\nMVIEW\n10,10\n110,80\n"));
    const auto found = viewports(run.drawing().paperSpace());
    ASSERT_EQ(found.size(), 2u);  // the sheet's own viewport and the new one
    EXPECT_EQ(db::fieldInteger(*found[0], "AcDbViewport", 69), 1);
    const db::ObjectRecord& viewport = *found[1];
    EXPECT_EQ(db::fieldInteger(viewport, "AcDbViewport", 69), 2);
    EXPECT_GT(db::fieldInteger(viewport, "AcDbViewport", 68), 0);
    const KcGePoint3d center = db::fieldPoint(viewport, "AcDbViewport", 10);
    EXPECT_NEAR(center.x, 60.0, kTolerance);
    EXPECT_NEAR(center.y, 45.0, kTolerance);
    EXPECT_NEAR(db::fieldReal(viewport, "AcDbViewport", 40), 100.0, kTolerance);
    EXPECT_NEAR(db::fieldReal(viewport, "AcDbViewport", 41), 70.0, kTolerance);
    const KcGePoint3d view = db::fieldPoint(viewport, "AcDbViewport", 12);
    EXPECT_NEAR(view.x, 100.0, kTolerance);
    EXPECT_NEAR(view.y, 50.0, kTolerance);
    EXPECT_NEAR(db::fieldReal(viewport, "AcDbViewport", 45), 140.0, kTolerance);  // 200 wide in a 10:7 window
    EXPECT_EQ(db::fieldInteger(viewport, {}, 67), 1);
}

// MSPACE enters the first viewport and PSPACE leaves it; both refuse the model tab.
TEST(LayoutCommand, ModelAndPaperSpaceSwitches) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kModelLine));
    ASSERT_TRUE(run.run("MSPACE\n"));
    EXPECT_TRUE(run.outputContains(L"** Command not allowed in Model Tab **"));
    ASSERT_TRUE(run.run("-LAYOUT\nS\nLayout1\nMSPACE\n"));
    EXPECT_TRUE(run.outputContains(L"There are no active model space viewports."));
    EXPECT_EQ(cvport(), 1);
    ASSERT_TRUE(run.run("MVIEW\n0,0\n50,50\nMVIEW\n60,0\n100,50\nMSPACE\n"));
    EXPECT_EQ(cvport(), 2);
    EXPECT_EQ(run.drawing().currentSpace(), run.drawing().modelSpace());
    ASSERT_TRUE(run.run("PSPACE\n"));
    EXPECT_EQ(cvport(), 1);
    EXPECT_EQ(run.drawing().currentSpace(), run.drawing().paperSpace());
}

// TILEMODE alone moves new objects between model space and the layout, in
// both directions, whatever CVPORT the drawing was saved with.
TEST(LayoutCommand, TilemodeChoosesWhereNewObjectsGo) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kModelLine));
    run.drawing().header.setInteger("$CVPORT", 70, 2);
    ASSERT_TRUE(run.run("TILEMODE\n0\nLINE\n0,0\n10,10\n\n"));
    EXPECT_EQ(cvport(), 1);
    const db::ObjectRecord* paperLine = run.drawing().record(run.drawing().recordCount() - 1);
    EXPECT_EQ(paperLine->owner, run.drawing().paperSpace());
    ASSERT_TRUE(run.run("TILEMODE\n1\nLINE\n0,0\n10,10\n\n"));
    EXPECT_EQ(cvport(), 2);
    const db::ObjectRecord* modelLine = run.drawing().record(run.drawing().recordCount() - 1);
    EXPECT_EQ(modelLine->owner, run.drawing().modelSpace());
}

// New layouts and viewports survive a save: both readers open the file and find them.
TEST(LayoutCommand, LayoutsAndViewportsSaveAndReadBack) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kModelLine));
    ASSERT_TRUE(
        run.run("-LAYOUT\nN\nSheet A\n-LAYOUT\nN\nSheet B\n-LAYOUT\nS\nSheet A\nMVIEW\n20,20\n220,170\n"
                "-LAYOUT\nS\nSheet B\nMVIEW\n0,0\n100,100\n"));
    test::TempDir dir;
    const auto saved = dir.file("layouts.dxf");
    ASSERT_EQ(dxf::saveDxfFile(run.drawing(), saved.string()), "");
    auto reread = dxf::readDxfFile(saved.string());
    ASSERT_TRUE(reread.ok()) << reread.error;
    for (const char* name : {"Layout1", "Sheet A", "Sheet B"}) {
        const db::ObjectRecord* layout = layoutNamed(*reread.drawing, name);
        ASSERT_TRUE(layout) << name;
        const db::ObjectRecord* block = reread.drawing->findByHandle(db::fieldHandle(*layout, "AcDbLayout", 330));
        ASSERT_TRUE(block) << name;
        const size_t expected = std::string(name) == "Layout1" ? 0u : 2u;
        EXPECT_EQ(viewports(block).size(), expected) << name;
    }
    EXPECT_EQ(db::recordName(*reread.drawing->paperSpace()), "*Paper_Space");
    EXPECT_EQ(reread.drawing->paperSpace(), reread.drawing->findByHandle(db::fieldHandle(
                                                *layoutNamed(*reread.drawing, "Sheet B"), "AcDbLayout", 330)));
    EXPECT_TRUE(test::openWithIndependentReader({{saved, saved}}).empty());
}

// ? lists the layouts by name pattern.
TEST(LayoutCommand, ListNamesLayouts) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run("-LAYOUT\nN\nPlan\n-LAYOUT\n?\nP*\n"));
    EXPECT_TRUE(run.outputContains(L"Layout: Plan"));
    EXPECT_FALSE(run.outputContains(L"Layout: Layout1"));
}

}  // namespace
}  // namespace korva
