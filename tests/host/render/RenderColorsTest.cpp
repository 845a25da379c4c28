// Colours and visibility in pictures: index, true, ByLayer and ByBlock colours
// land in the pixels of their entities; entities on layers that are off or
// frozen leave the background; block references pass their colour and layer to
// the parts of the block that ask for them.
#include <gtest/gtest.h>

#include "RenderTestSupport.h"

namespace korva::test {
namespace {

// A thick horizontal line at y along x = 10 .. 90 (lineweight 0.60 mm, about
// two pixels at 96 dpi), with extra groups after the layer.
std::string line(std::string_view handle, double y, std::string_view layer, std::string_view extra,
                 std::string_view owner = "1F") {
    const std::string ys = std::to_string(y);
    return dxfTags({{0, "LINE"}, {5, handle}, {330, owner}, {100, "AcDbEntity"}, {8, layer}}) + std::string(extra) +
           dxfTags({{370, "60"}, {100, "AcDbLine"}, {10, "10.0"}, {20, ys}, {30, "0.0"}, {11, "90.0"}, {21, ys},
                    {31, "0.0"}});
}

// Points at (0, 0) and (100, 100) fix the extents whatever else shows.
std::string frameCorners() {
    return dxfTags({{0, "POINT"}, {5, "F0"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbPoint"},
                    {10, "0.0"}, {20, "0.0"}, {30, "0.0"}}) +
           dxfTags({{0, "POINT"}, {5, "F1"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbPoint"},
                    {10, "100.0"}, {20, "100.0"}, {30, "0.0"}});
}

struct ColorCase {
    const char* name;
    std::string layers;
    std::string blocks;  // entities of block "B", owner written as OWNER
    std::string entities;
    QColor expected;  // at (50, 50)
};

void PrintTo(const ColorCase& c, std::ostream* out) { *out << c.name; }

class EntityColors : public ::testing::TestWithParam<ColorCase> {};

// The pixel on the entity at (50, 50) has the colour the rules give it.
TEST_P(EntityColors, PixelOnTheEntityHasItsColour) {
    const ColorCase& c = GetParam();
    DrawingParts parts;
    parts.layers = c.layers;
    if (!c.blocks.empty()) addBlock(parts, "B", 0x300, c.blocks);
    parts.entities = frameCorners() + c.entities;
    const auto drawing = loadDrawing(drawingDxf(parts));
    ASSERT_TRUE(drawing);
    const render::RenderedImage rendered = renderSharp(*drawing);
    const QColor pixel = colorAt(rendered, 50.0, 50.0);
    EXPECT_EQ(pixel.rgb(), c.expected.rgb()) << pixel.name().toStdString() << " instead of "
                                             << c.expected.name().toStdString();
}

std::string insertOf(std::string_view handle, std::string_view layer, std::string_view extra) {
    return dxfTags({{0, "INSERT"}, {5, handle}, {330, "1F"}, {100, "AcDbEntity"}, {8, layer}}) + std::string(extra) +
           dxfTags({{100, "AcDbBlockReference"}, {2, "B"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}});
}

const QColor kRed(255, 0, 0), kGreen(0, 255, 0), kBlue(0, 0, 255), kBlack(0, 0, 0), kWhite(255, 255, 255);

INSTANTIATE_TEST_SUITE_P(
    Render, EntityColors,
    ::testing::Values(
        ColorCase{"IndexColourRed", "", "", line("100", 50, "0", dxfTags({{62, "1"}})), kRed},
        ColorCase{"ByLayerColour", layerRecord("BLUE", 0x200, 5), "", line("100", 50, "BLUE", ""), kBlue},
        ColorCase{"TrueColourOverIndex", "", "", line("100", 50, "0", dxfTags({{62, "1"}, {420, "3368652"}})),
                  QColor(0x33, 0x66, 0xCC)},
        ColorCase{"ColourSevenIsBlackOnWhite", "", "", line("100", 50, "0", dxfTags({{62, "7"}})), kBlack},
        ColorCase{"TopLevelByBlockIsForeground", "", "", line("100", 50, "0", dxfTags({{62, "0"}})), kBlack},
        ColorCase{"LayerOffLeavesBackground", layerRecord("OFF", 0x200, -1), "",
                  line("100", 50, "OFF", dxfTags({{62, "3"}})), kWhite},
        ColorCase{"FrozenLayerLeavesBackground", layerRecord("COLD", 0x200, 1, 1), "",
                  line("100", 50, "COLD", dxfTags({{62, "3"}})), kWhite},
        ColorCase{"InvisibleEntityLeavesBackground", "", "", line("100", 50, "0", dxfTags({{60, "1"}, {62, "3"}})),
                  kWhite},
        ColorCase{"ByBlockTakesTheReferenceColour", "", line("310", 50, "0", dxfTags({{62, "0"}}), "OWNER"),
                  insertOf("100", "0", dxfTags({{62, "3"}})), kGreen},
        ColorCase{"ByLayerOnLayerZeroTakesTheReferenceLayer", layerRecord("RED", 0x200, 1),
                  line("310", 50, "0", "", "OWNER"), insertOf("100", "RED", ""), kRed},
        ColorCase{"ByLayerOnItsOwnLayerKeepsIt", layerRecord("RED", 0x200, 1) + layerRecord("BLUE", 0x201, 5),
                  line("310", 50, "BLUE", "", "OWNER"), insertOf("100", "RED", ""), kBlue},
        ColorCase{"ReferenceOnOffLayerHidesItsLayerZeroParts", layerRecord("OFF", 0x200, -1),
                  line("310", 50, "0", dxfTags({{62, "1"}}), "OWNER"), insertOf("100", "OFF", ""), kWhite},
        ColorCase{"ReferenceOnOffLayerShowsPartsOnOtherLayers",
                  layerRecord("OFF", 0x200, -1) + layerRecord("BLUE", 0x201, 5),
                  line("310", 50, "BLUE", "", "OWNER"), insertOf("100", "OFF", ""), kBlue},
        ColorCase{"ReferenceOnFrozenLayerHidesEverything",
                  layerRecord("COLD", 0x200, 1, 1) + layerRecord("BLUE", 0x201, 5),
                  line("310", 50, "BLUE", "", "OWNER"), insertOf("100", "COLD", ""), kWhite}),
    [](const ::testing::TestParamInfo<ColorCase>& param) { return std::string(param.param.name); });

// A layer's true colour (420 on the LAYER record) is what ByLayer entities show.
TEST(RenderColors, LayerTrueColourReachesByLayerEntities) {
    DrawingParts parts;
    parts.layers = dxfTags({{0, "LAYER"}, {5, "200"}, {330, "2"}, {100, "AcDbSymbolTableRecord"},
                            {100, "AcDbLayerTableRecord"}, {2, "TEAL"}, {70, "0"}, {62, "4"}, {420, "1144183"},
                            {6, "Continuous"}, {370, "-3"}});
    parts.entities = frameCorners() + line("100", 50, "TEAL", "");
    const auto drawing = loadDrawing(drawingDxf(parts));
    const QColor pixel = colorAt(renderSharp(*drawing), 50.0, 50.0);
    EXPECT_EQ(pixel.rgb(), QColor(0x11, 0x75, 0x77).rgb()) << pixel.name().toStdString();
}

// On the dark background colour 7 turns white, while other colours stay as they are.
TEST(RenderColors, DarkBackgroundDrawsColourSevenWhite) {
    DrawingParts parts;
    parts.entities = frameCorners() + line("100", 50, "0", dxfTags({{62, "7"}})) +
                     line("101", 30, "0", dxfTags({{62, "1"}}));
    const auto drawing = loadDrawing(drawingDxf(parts));
    render::RenderOptions options;
    options.longSide = 400;
    options.antialiasing = false;
    options.background = render::Background::Dark;
    std::string error;
    const auto rendered = render::renderImage(*drawing, options, error);
    ASSERT_TRUE(rendered) << error;
    EXPECT_EQ(colorAt(*rendered, 50, 50).rgb(), kWhite.rgb());
    EXPECT_EQ(colorAt(*rendered, 50, 30).rgb(), kRed.rgb());
    EXPECT_NE(colorAt(*rendered, 50, 70).rgb(), kWhite.rgb()) << "the background is dark";
}

}  // namespace
}  // namespace korva::test
