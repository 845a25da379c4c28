// BURST turns each attribute of an exploded reference into a TEXT entity with
// the attribute's value and look: layer, colour (with its odd defaults),
// style, height, angles, justification; only X and Y of its insertion point.
#include <gtest/gtest.h>

#include "BurstTestSupport.h"

namespace korva::test::blocks {
namespace {

// Block "TAG": a line and one attribute definition. One reference at (10,20) with one attribute.
struct OneAttribute {
    BlockDrawing drawing;
    std::string reference;
    std::string attribute;
};

OneAttribute oneAttribute(const TextLook& look, const std::string& value = "A-101", int flags = 0) {
    OneAttribute made;
    made.drawing.layer("NOTES", 3);
    made.drawing.textStyle("NARROW", 0.8);
    made.drawing.dashedLinetype("DASHED");
    const std::string block = made.drawing.beginBlock("TAG");
    made.drawing.line(block, {0, 0, 0}, {1, 0, 0});
    made.drawing.attdef(block, "ROOM", "?", TextLook{}, flags);
    made.drawing.endBlock();
    made.reference = made.drawing.insert(BlockDrawing::modelSpace(), "TAG", {{10, 20, 0}}, true);
    made.attribute = made.drawing.attrib(made.reference, "ROOM", value, look, flags);
    made.drawing.seqend(made.reference);
    return made;
}

TEST(BurstAttributeTexts, AnAttributeBecomesATextWithItsValueAndLook) {
    TextLook look;
    look.position = {12, 21, 4};
    look.height = 2.5;
    look.rotation = 30;
    look.widthFactor = 0.9;
    look.oblique = 10;
    look.style = "NARROW";
    look.layer = "NOTES";
    look.colour = 5;
    look.linetype = "DASHED";
    look.generation = 2;
    OneAttribute made = oneAttribute(look);
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run(burstOf({made.reference})));

    const std::vector<EntityList> texts = topLevelEntities(L"TEXT");
    ASSERT_EQ(texts.size(), 1u);
    const EntityList& text = texts[0];
    EXPECT_EQ(text.text(1), L"A-101");
    EXPECT_EQ(text.text(8), L"NOTES");
    EXPECT_EQ(text.integer(62), 5);
    EXPECT_EQ(text.text(7), L"NARROW");
    EXPECT_EQ(text.text(6), L"DASHED");
    EXPECT_DOUBLE_EQ(text.real(40), 2.5);
    EXPECT_NEAR(text.real(50), 30 * kDegree, 1e-12);
    EXPECT_DOUBLE_EQ(text.real(41), 0.9);
    EXPECT_NEAR(text.real(51), 10 * kDegree, 1e-12);
    EXPECT_EQ(text.integer(71), 2);
    EXPECT_EQ(text.integer(72), 0);
    EXPECT_EQ(text.integer(73), 0);
    expectPoint(text.point(10), {12, 21, 0}, "the attribute's X and Y; its Z of 4 is not carried");
    EXPECT_FALSE(EntityList::ofHandle(made.reference)) << "the reference is gone";
    expectCleanAudit(run);
}

TEST(BurstAttributeTexts, MissingColourAndLinetypeBecomeByblockAndContinuous) {
    TextLook look;
    look.position = {11, 20, 0};
    OneAttribute made = oneAttribute(look);
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run(burstOf({made.reference})));
    const std::vector<EntityList> texts = topLevelEntities(L"TEXT");
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].integer(62), 0) << "an attribute without a colour number gives colour 0 (BYBLOCK)";
    EXPECT_EQ(texts[0].text(6), L"Continuous");
    EXPECT_EQ(texts[0].text(8), L"0");
}

TEST(BurstAttributeTexts, AnInvisibleAttributeComesOutAsVisibleText) {
    TextLook look;
    look.position = {11, 20, 0};
    OneAttribute made = oneAttribute(look, "HIDDEN-VALUE", 1);
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run(burstOf({made.reference})));
    const std::vector<EntityList> texts = textsReading(L"HIDDEN-VALUE");
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_FALSE(texts[0].has(60)) << "the text is visible";
    EXPECT_FALSE(texts[0].has(70)) << "a TEXT has no attribute flags";
}

// Horizontal (72) and vertical (74) justification: the text takes 72 and 73 = the attribute's 74,
// and the attribute's alignment point with its Z.
struct JustificationCase {
    const char* name;
    int horizontal;
    int vertical;
    Xyz alignment;
};
void PrintTo(const JustificationCase& c, std::ostream* out) { *out << c.name; }

class BurstJustification : public ::testing::TestWithParam<JustificationCase> {};

TEST_P(BurstJustification, TheTextKeepsTheAttributesJustificationAndAlignmentPoint) {
    const JustificationCase& c = GetParam();
    TextLook look;
    look.position = {10, 20, 3};
    look.alignment = c.alignment;
    look.horizontal = c.horizontal;
    look.vertical = c.vertical;
    OneAttribute made = oneAttribute(look);
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run(burstOf({made.reference})));
    const std::vector<EntityList> texts = topLevelEntities(L"TEXT");
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].integer(72), c.horizontal);
    EXPECT_EQ(texts[0].integer(73), c.vertical);
    expectPoint(texts[0].point(11), {c.alignment.x, c.alignment.y, c.alignment.z}, c.name);
}

INSTANTIATE_TEST_SUITE_P(Cases, BurstJustification,
                         ::testing::Values(JustificationCase{"CenterBaseline", 1, 0, {15, 20, 3}},
                                           JustificationCase{"RightTop", 2, 3, {18, 22, 3}},
                                           JustificationCase{"Middle", 4, 0, {14, 21, 3}},
                                           JustificationCase{"LeftMiddle", 0, 2, {10, 21, 3}},
                                           JustificationCase{"CenterBottom", 1, 1, {14, 19, 3}}),
                         CaseName());

// The colour items: 420 when the attribute has 420 or 430 (0 when only 430), 430 only with both.
struct ColourCase {
    const char* name;
    std::optional<int> colour;
    std::optional<int> trueColour;
    std::optional<std::string> colourName;
    long expectedIndex;
    std::optional<long> expectedTrueColour;
    std::wstring expectedName;
};
void PrintTo(const ColourCase& c, std::ostream* out) { *out << c.name; }

class BurstColours : public ::testing::TestWithParam<ColourCase> {};

TEST_P(BurstColours, TheTextTakesTheAttributesColourItems) {
    const ColourCase& c = GetParam();
    TextLook look;
    look.position = {11, 20, 0};
    look.colour = c.colour;
    look.trueColour = c.trueColour;
    look.colourName = c.colourName;
    OneAttribute made = oneAttribute(look);
    ScriptRun run = burstRun(made.drawing);
    ASSERT_TRUE(run.run(burstOf({made.reference})));
    const std::vector<EntityList> texts = topLevelEntities(L"TEXT");
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].integer(62), c.expectedIndex);
    EXPECT_EQ(texts[0].integer(420), c.expectedTrueColour);
    EXPECT_EQ(texts[0].text(430), c.expectedName);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BurstColours,
    ::testing::Values(ColourCase{"IndexOnly", 1, std::nullopt, std::nullopt, 1, std::nullopt, L""},
                      ColourCase{"ByLayerBecomesByBlock", std::nullopt, std::nullopt, std::nullopt, 0, std::nullopt, L""},
                      ColourCase{"TrueColour", 5, 0x3366CC, std::nullopt, 5, 0x3366CC, L""},
                      ColourCase{"TrueColourAndName", 5, 0x3366CC, "PALETTE$BLUE", 5, 0x3366CC, L"PALETTE$BLUE"},
                      ColourCase{"NameWithoutTrueColour", 5, std::nullopt, "PALETTE$BLUE", 5, 0, L""}),
    CaseName());

TEST(BurstAttributeTexts, TextsAreMadeAfterTheExplodedGeometryInSelectionOrder) {
    BlockDrawing drawing;
    const std::string block = drawing.beginBlock("PAIR");
    drawing.line(block, {0, 0, 0}, {1, 0, 0});
    drawing.attdef(block, "FIRST", "?", TextLook{});
    drawing.attdef(block, "SECOND", "?", TextLook{});
    drawing.endBlock();
    std::vector<std::string> references;
    for (int i = 0; i < 2; ++i) {
        const std::string reference = drawing.insert(BlockDrawing::modelSpace(), "PAIR", {{10.0 * i, 0, 0}}, true);
        TextLook look;
        look.position = {10.0 * i, 1, 0};
        drawing.attrib(reference, "FIRST", "R" + std::to_string(i) + "-1", look);
        drawing.attrib(reference, "SECOND", "R" + std::to_string(i) + "-2", look);
        drawing.seqend(reference);
        references.push_back(reference);
    }
    ScriptRun run = burstRun(drawing);
    // The second reference is picked first.
    ASSERT_TRUE(run.run(burstOf({references[1], references[0]})));
    std::vector<std::wstring> order;
    bool textBeforeLine = false;
    for (const EntityList& entity : topLevelEntities()) {
        if (entity.type() == L"TEXT") order.push_back(entity.text(1));
        if (entity.type() == L"LINE" && !order.empty()) textBeforeLine = true;
    }
    EXPECT_EQ(order, (std::vector<std::wstring>{L"R1-1", L"R1-2", L"R0-1", L"R0-2"}));
    EXPECT_FALSE(textBeforeLine) << "the texts are created at the very end";
}

}  // namespace
}  // namespace korva::test::blocks
