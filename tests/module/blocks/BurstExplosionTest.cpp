// BURST explodes each reference into model space: the parts take the
// reference's layer and colour where they came from layer "0" or BYBLOCK,
// constant attribute definitions become texts placed by simple addition, the
// definitions the explosion releases are deleted, and a reference that cannot
// be exploded is erased all the same.
#include <gtest/gtest.h>

#include "BurstTestSupport.h"

namespace korva::test::blocks {
namespace {

// The line of model space that starts at (x, y), or an empty list.
EntityList lineFrom(double x, double y) {
    for (EntityList& line : topLevelEntities(L"LINE")) {
        const auto start = line.point(10);
        if (start && std::abs((*start)[0] - x) < 1e-9 && std::abs((*start)[1] - y) < 1e-9) return std::move(line);
    }
    return EntityList(nullptr);
}

// Each part's layer and colour (62 absent = BYLAYER = 256), inside the block and expected after bursting
// a reference on layer "WALLS" with colour 4.
struct PropertyCase {
    const char* name;
    std::string layer;
    std::optional<int> colour;
    std::wstring expectedLayer;
    long expectedColour;
};

const PropertyCase kPropertyCases[] = {
    {"LayerZeroByBlock", "0", 0, L"WALLS", 4},
    {"LayerZeroByLayer", "0", std::nullopt, L"WALLS", 256},
    {"LayerZeroRed", "0", 1, L"0", 1},
    {"OtherLayerByBlock", "DETAIL", 0, L"DETAIL", 4},
    {"OtherLayerByLayer", "DETAIL", std::nullopt, L"DETAIL", 256},
};

TEST(BurstExplosion, PartsTakeTheReferencesLayerAndColourByTheirOrigin) {
    BlockDrawing drawing;
    drawing.layer("WALLS", 2);
    drawing.layer("DETAIL", 6);
    const std::string block = drawing.beginBlock("PARTS");
    double x = 0;
    for (const PropertyCase& c : kPropertyCases) {
        drawing.line(block, {x, 0, 0}, {x, 1, 0}, Look{c.layer, c.colour});
        x += 1;
    }
    drawing.endBlock();
    const std::string reference =
        drawing.insert(BlockDrawing::modelSpace(), "PARTS", {{100, 0, 0}, {1, 1, 1}, 0, Look{"WALLS", 4}});
    ScriptRun run = burstRun(drawing);
    ASSERT_TRUE(run.run(burstOf({reference})));
    EXPECT_FALSE(EntityList::ofHandle(reference)) << "the reference is erased";
    x = 0;
    for (const PropertyCase& c : kPropertyCases) {
        SCOPED_TRACE(c.name);
        const EntityList line = lineFrom(100 + x, 0);
        x += 1;
        ASSERT_TRUE(line) << "the exploded line is in model space";
        EXPECT_EQ(line.text(8), c.expectedLayer);
        EXPECT_EQ(line.integer(62).value_or(256), c.expectedColour);
    }
    expectCleanAudit(run);
}

// A reference placed in several ways: its parts follow the placement, while the text of a constant
// attribute definition at (1,1) of the block lands at the reference's position plus (1,1) whatever
// the rotation and scale.
struct PlacementCase {
    const char* name;
    InsertPlacement placement;
    std::vector<double> lineStart;  // the block's line runs from (1,0) to (2,0)
    std::vector<double> lineEnd;
};
void PrintTo(const PlacementCase& c, std::ostream* out) { *out << c.name; }

class BurstPlacement : public ::testing::TestWithParam<PlacementCase> {};

TEST_P(BurstPlacement, PartsFollowThePlacementAndConstantTextsAreAddedNotTransformed) {
    const PlacementCase& c = GetParam();
    BlockDrawing drawing;
    const std::string block = drawing.beginBlock("MARK");
    drawing.line(block, {1, 0, 0}, {2, 0, 0});
    TextLook constant;
    constant.position = {1, 1, 0};
    constant.height = 3;
    constant.rotation = 45;
    drawing.attdef(block, "KIND", "FIXED-KIND", constant, 2);
    drawing.endBlock();
    const std::string reference = drawing.insert(BlockDrawing::modelSpace(), "MARK", c.placement);
    ScriptRun run = burstRun(drawing);
    ASSERT_TRUE(run.run(burstOf({reference})));

    const std::vector<EntityList> lines = topLevelEntities(L"LINE");
    ASSERT_EQ(lines.size(), 1u);
    expectPoint(lines[0].point(10), c.lineStart, "line start");
    expectPoint(lines[0].point(11), c.lineEnd, "line end");
    const std::vector<EntityList> texts = textsReading(L"FIXED-KIND");
    ASSERT_EQ(texts.size(), 1u) << "one text for the constant definition";
    const Xyz& at = c.placement.position;
    expectPoint(texts[0].point(10), {at.x + 1, at.y + 1, at.z}, "reference position plus definition position");
    EXPECT_DOUBLE_EQ(texts[0].real(40), 3.0) << "the definition's height, not scaled";
    EXPECT_NEAR(texts[0].real(50), 45 * kDegree, 1e-12) << "the definition's rotation, not turned";
    EXPECT_TRUE(topLevelEntities(L"ATTDEF").empty()) << "the released definition is deleted";
    expectCleanAudit(run);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BurstPlacement,
    ::testing::Values(PlacementCase{"Plain", {{10, 20, 0}}, {11, 20, 0}, {12, 20, 0}},
                      PlacementCase{"Rotated", {{10, 20, 0}, {1, 1, 1}, 90}, {10, 21, 0}, {10, 22, 0}},
                      PlacementCase{"Scaled", {{10, 20, 0}, {2, 2, 2}, 0}, {12, 20, 0}, {14, 20, 0}},
                      PlacementCase{"Mirrored", {{10, 20, 0}, {-1, 1, 1}, 0}, {9, 20, 0}, {8, 20, 0}},
                      PlacementCase{"Raised", {{10, 20, 5}, {1, 1, 1}, 0}, {11, 20, 5}, {12, 20, 5}}),
    CaseName());

TEST(BurstExplosion, DefinitionsAlreadyInTheDrawingSurviveWhileReleasedOnesGo) {
    BlockDrawing drawing;
    const std::string block = drawing.beginBlock("TAGGED");
    drawing.attdef(block, "ROOM", "?", TextLook{});
    drawing.attdef(block, "FLOOR", "?", TextLook{});
    drawing.endBlock();
    TextLook loose;
    loose.position = {50, 50, 0};
    const std::string looseDefinition = drawing.attdef(BlockDrawing::modelSpace(), "LOOSE", "free", loose);
    const std::string reference = drawing.insert(BlockDrawing::modelSpace(), "TAGGED", {{0, 0, 0}}, true);
    drawing.attrib(reference, "ROOM", "101", TextLook{});
    drawing.attrib(reference, "FLOOR", "1", TextLook{});
    drawing.seqend(reference);
    ScriptRun run = burstRun(drawing);
    ASSERT_TRUE(run.run(burstOf({reference})));
    const std::vector<EntityList> definitions = topLevelEntities(L"ATTDEF");
    ASSERT_EQ(definitions.size(), 1u);
    EXPECT_EQ(definitions[0].text(2), L"LOOSE");
    EXPECT_TRUE(EntityList::ofHandle(looseDefinition));
    EXPECT_EQ(textsReading(L"101").size(), 1u);
    EXPECT_EQ(textsReading(L"1").size(), 1u);
}

TEST(BurstExplosion, ANestedReferenceStaysAReferenceWithItsOwnAttributes) {
    BlockDrawing drawing;
    const std::string inner = drawing.beginBlock("INNER");
    drawing.circle(inner, {0, 0, 0}, 1);
    drawing.attdef(inner, "NUM", "?", TextLook{});
    drawing.endBlock();
    const std::string outer = drawing.beginBlock("OUTER");
    drawing.line(outer, {0, 0, 0}, {5, 0, 0});
    const std::string nested = drawing.insert(outer, "INNER", {{5, 0, 0}}, true);
    TextLook nestedLook;
    nestedLook.position = {5, 1, 0};
    drawing.attrib(nested, "NUM", "7", nestedLook);
    drawing.seqend(nested);
    drawing.attdef(outer, "NAME", "?", TextLook{});
    drawing.endBlock();
    const std::string reference = drawing.insert(BlockDrawing::modelSpace(), "OUTER", {{100, 0, 0}}, true);
    TextLook look;
    look.position = {100, 2, 0};
    drawing.attrib(reference, "NAME", "OUTER-NAME", look);
    drawing.seqend(reference);
    ScriptRun run = burstRun(drawing);
    ASSERT_TRUE(run.run(burstOf({reference})));

    const std::vector<EntityList> references = topLevelEntities(L"INSERT");
    ASSERT_EQ(references.size(), 1u) << "one level only";
    EXPECT_EQ(references[0].text(2), L"INNER");
    expectPoint(references[0].point(10), {105, 0, 0}, "the nested reference moved with the outer one");
    EXPECT_EQ(textsReading(L"OUTER-NAME").size(), 1u);
    EXPECT_TRUE(textsReading(L"7").empty()) << "the nested reference keeps its attribute as an attribute";
    EXPECT_EQ(topLevelEntities(L"LINE").size(), 1u);
    expectCleanAudit(run);
}

TEST(BurstExplosion, NonUniformScaleTurnsCirclesIntoEllipses) {
    BlockDrawing drawing;
    const std::string block = drawing.beginBlock("ROUND");
    drawing.circle(block, {0, 0, 0}, 1);
    drawing.line(block, {0, 0, 0}, {1, 1, 0});
    drawing.endBlock();
    const std::string reference = drawing.insert(BlockDrawing::modelSpace(), "ROUND", {{10, 10, 0}, {3, 1, 1}, 0});
    ScriptRun run = burstRun(drawing);
    ASSERT_TRUE(run.run(burstOf({reference})));
    EXPECT_FALSE(EntityList::ofHandle(reference));
    const std::vector<EntityList> ellipses = topLevelEntities(L"ELLIPSE");
    ASSERT_EQ(ellipses.size(), 1u);
    expectPoint(ellipses[0].point(10), {10, 10, 0}, "ellipse centre");
    EXPECT_NEAR(ellipses[0].real(40), 1.0 / 3.0, 1e-9) << "minor to major axis";
    const std::vector<EntityList> lines = topLevelEntities(L"LINE");
    ASSERT_EQ(lines.size(), 1u);
    expectPoint(lines[0].point(11), {13, 11, 0}, "line end stretched along X");
}

TEST(BurstExplosion, AReferenceThatCannotBeExplodedIsErasedButItsAttributesStillBecomeTexts) {
    // A non-uniform scale cannot be applied to the attribute definition, so the explosion fails.
    BlockDrawing drawing;
    const std::string block = drawing.beginBlock("STRETCHY");
    drawing.line(block, {0, 0, 0}, {1, 0, 0});
    drawing.attdef(block, "ID", "?", TextLook{});
    drawing.endBlock();
    const std::string reference =
        drawing.insert(BlockDrawing::modelSpace(), "STRETCHY", {{0, 0, 0}, {2, 1, 1}, 0}, true);
    TextLook look;
    look.position = {0, 3, 0};
    drawing.attrib(reference, "ID", "SURVIVOR", look);
    drawing.seqend(reference);
    ScriptRun run = burstRun(drawing);
    ASSERT_TRUE(run.run(burstOf({reference})));
    EXPECT_FALSE(EntityList::ofHandle(reference)) << "erased without replacement";
    EXPECT_TRUE(topLevelEntities(L"LINE").empty()) << "nothing of the block came out";
    const std::vector<EntityList> texts = textsReading(L"SURVIVOR");
    ASSERT_EQ(texts.size(), 1u);
    expectPoint(texts[0].point(10), {0, 3, 0}, "the attribute text");
    expectCleanAudit(run);
}

TEST(BurstExplosion, AReferenceToABlockMarkedNotExplodableIsLeftAloneButStillGivesTexts) {
    BlockDrawing drawing;
    const std::string block = drawing.beginBlock("FIXED", {}, 0, false);
    drawing.line(block, {0, 0, 0}, {1, 0, 0});
    drawing.attdef(block, "ID", "?", TextLook{});
    TextLook constant;
    constant.position = {0, 2, 0};
    drawing.attdef(block, "KIND", "NEVER-MADE", constant, 2);
    drawing.endBlock();
    const std::string reference = drawing.insert(BlockDrawing::modelSpace(), "FIXED", {{0, 0, 0}}, true);
    const std::string attribute = drawing.attrib(reference, "ID", "KEEP", TextLook{});
    drawing.seqend(reference);
    ScriptRun run = burstRun(drawing);
    ASSERT_TRUE(run.run(burstOf({reference})));
    EXPECT_TRUE(EntityList::ofHandle(reference)) << "the reference stays";
    EXPECT_TRUE(EntityList::ofHandle(attribute)) << "with its attribute";
    EXPECT_EQ(textsReading(L"KEEP").size(), 1u) << "the attribute text is made all the same";
    EXPECT_TRUE(textsReading(L"NEVER-MADE").empty()) << "constant definitions give texts only when exploding";
    EXPECT_TRUE(topLevelEntities(L"LINE").empty());
}

TEST(BurstExplosion, AReferenceInALayoutExplodesIntoModelSpace) {
    BlockDrawing drawing;
    const std::string block = drawing.beginBlock("SHEETMARK");
    drawing.line(block, {0, 0, 0}, {1, 0, 0});
    drawing.attdef(block, "ID", "?", TextLook{});
    TextLook constant;
    constant.position = {0, 2, 0};
    drawing.attdef(block, "KIND", "CONST-TEXT", constant, 2);
    drawing.endBlock();
    const std::string reference = drawing.insert(BlockDrawing::paperSpace(), "SHEETMARK", {{30, 40, 0}}, true);
    TextLook look;
    look.position = {30, 41, 0};
    drawing.attrib(reference, "ID", "SHEET-ATTRIBUTE", look);
    drawing.seqend(reference);
    ScriptRun run = burstRun(drawing);
    ASSERT_EQ(EntityList::ofHandle(reference).integer(67), 1) << "the reference starts in the layout";
    // Work in the layout, so that the texts made from attributes go to paper space.
    ASSERT_TRUE(run.run("TILEMODE\n0\n" + burstOf({reference})));
    EXPECT_FALSE(EntityList::ofHandle(reference));
    const std::vector<EntityList> lines = topLevelEntities(L"LINE");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_FALSE(lines[0].has(67)) << "the exploded line lies in model space";
    const std::vector<EntityList> constants = textsReading(L"CONST-TEXT");
    ASSERT_EQ(constants.size(), 1u);
    EXPECT_FALSE(constants[0].has(67)) << "the constant-definition text lies in model space";
    const std::vector<EntityList> attributes = textsReading(L"SHEET-ATTRIBUTE");
    ASSERT_EQ(attributes.size(), 1u);
    EXPECT_EQ(attributes[0].integer(67), 1) << "the attribute text goes to the current space, the layout";
    expectCleanAudit(run);
}

}  // namespace
}  // namespace korva::test::blocks
