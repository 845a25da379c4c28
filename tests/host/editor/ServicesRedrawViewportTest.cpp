// kcedRedraw keeps the document's highlighted set; kcedGetCurViewportObjectId
// finds the VIEWPORT entity whose number is CVPORT while a layout is current.
#include <gtest/gtest.h>

#include <string>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "db/EntityNames.h"
#include "db/ObjectAccess.h"
#include "editor/SystemVariables.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace korva {
namespace {

constexpr const char* kLine =
    "  0\nLINE\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
    " 11\n1.0\n 21\n1.0\n 31\n0.0\n";

std::string viewportText(const char* handle, int number) {
    return std::string("  0\nVIEWPORT\n  5\n") + handle +
           "\n330\n1B\n100\nAcDbEntity\n 67\n1\n  8\n0\n100\nAcDbViewport\n 10\n5.0\n 20\n4.0\n 30\n0.0\n"
           " 40\n10.0\n 41\n8.0\n 68\n1\n 69\n" + std::to_string(number) + "\n";
}

// A drawing whose layout is current (TILEMODE 0) with its paper-space viewport and one more.
std::string layoutDrawing() {
    std::string text = test::drawingText(kLine + viewportText("A1", 1) + viewportText("A2", 2));
    const std::string tilemode = "$TILEMODE\n 70\n     1";
    text.replace(text.find(tilemode), tilemode.size(), "$TILEMODE\n 70\n     0");
    return text;
}

db::Handle handleOf(KcDbObjectId id) { return id.isNull() ? 0 : static_cast<db::Handle>(id.handle()); }

// Modes 3 and 4 add and remove the entity from the highlighted set; 1 and 2 leave it alone.
TEST(ServicesRedraw, HighlightFollowsModes) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kLine));
    kcad_name line;
    ASSERT_EQ(kcdbHandEnt(L"E1", line), RTNORM);
    const db::ObjectRecord* record = db::recordOf(line);
    auto& highlighted = run.document().highlighted();
    const struct {
        int mode;
        bool highlighted;
    } steps[] = {{3, true}, {1, true}, {2, true}, {3, true}, {4, false}, {1, false}, {4, false}};
    for (const auto& step : steps) {
        EXPECT_EQ(kcedRedraw(line, step.mode), RTNORM) << step.mode;
        EXPECT_EQ(highlighted.count(record) == 1, step.highlighted) << "after mode " << step.mode;
    }
}

// A null entity redraws everything whatever the mode; unknown names and modes are errors.
TEST(ServicesRedraw, NullAndBadInput) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kLine));
    const kcad_name none = {0, 0};
    EXPECT_EQ(kcedRedraw(nullptr, 0), RTNORM);
    EXPECT_EQ(kcedRedraw(none, 7), RTNORM);
    const kcad_name unknown = {99999, 12345};
    EXPECT_EQ(kcedRedraw(unknown, 3), RTERROR);
    kcad_name line;
    ASSERT_EQ(kcdbHandEnt(L"E1", line), RTNORM);
    EXPECT_EQ(kcedRedraw(line, 0), RTERROR);
    EXPECT_EQ(kcedRedraw(line, 5), RTERROR);
    EXPECT_TRUE(run.document().highlighted().empty());
}

// In a layout the current viewport is the one CVPORT numbers; in model space there is none.
TEST(ServicesViewport, CurrentViewportFollowsCvport) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(layoutDrawing());
    EXPECT_EQ(handleOf(kcedGetCurViewportObjectId()), 0xA1u) << "paper space itself: viewport 1";
    ASSERT_EQ(editor::SystemVariables::instance().setValue(L"CVPORT", editor::VarValue::ofInteger(editor::VarType::Short, 2)), RTNORM);
    EXPECT_EQ(handleOf(kcedGetCurViewportObjectId()), 0xA2u) << "a model-space viewport of the layout";
    ASSERT_EQ(editor::SystemVariables::instance().setValue(L"TILEMODE", editor::VarValue::ofInteger(editor::VarType::Short, 1)), RTNORM);
    EXPECT_TRUE(kcedGetCurViewportObjectId().isNull()) << "model space";
}

// A drawing in model space has no current viewport entity.
TEST(ServicesViewport, ModelSpaceHasNone) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kLine));
    EXPECT_TRUE(kcedGetCurViewportObjectId().isNull());
}

}  // namespace
}  // namespace korva
