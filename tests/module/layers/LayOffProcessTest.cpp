// LAYOFF in a fresh korva process, as a user runs it: the nesting mode starts
// at Block in every new process, and the saved drawing opens in the
// independent DXF reader.
#include <gtest/gtest.h>

#include <string>

#include "LayerTestSupport.h"
#include "RunKorva.h"
#include "TestFiles.h"
#include "db/RecordFields.h"
#include "dxf/DxfReader.h"

namespace korva::test::layers {
namespace {

bool layerIsOff(const db::Drawing& drawing, const std::string& name) {
    const db::ObjectRecord* layer = drawing.tableRecord("LAYER", name);
    return layer && db::fieldInteger(*layer, {}, 62, 7) < 0;
}

// Without an options answer, a pick two blocks deep turns off the innermost reference's layer.
TEST(LayOffProcess, StartsInBlockModeAndSavesAReadableDrawing) {
    TempDir dir;
    const auto plan = dir.file("plan.dxf");
    const auto saved = dir.file("saved.dxf");
    writeFileBytes(plan, planDrawing());
    const KorvaRun run = runKorva({"-q", "--profile", dir.file("profile").string(), "-e",
                                   "(setvar \"CLAYER\" \"WORK\")\nLAYOFF\n105,0\n\n", "-o", saved.string(),
                                   plan.string()});
    ASSERT_EQ(run.exitStatus, 0) << run.output;
    const auto reread = dxf::readDxfFile(saved.string());
    ASSERT_TRUE(reread.ok()) << reread.error;
    EXPECT_TRUE(layerIsOff(*reread.drawing, "REFS_IN"));
    EXPECT_FALSE(layerIsOff(*reread.drawing, "FURN"));
    EXPECT_FALSE(layerIsOff(*reread.drawing, "REFS_OUT"));
    EXPECT_TRUE(openWithIndependentReader({{saved, plan}}).empty());
}

}  // namespace
}  // namespace korva::test::layers
