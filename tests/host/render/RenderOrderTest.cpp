// Draw order and what covers what: a wipeout masks what was drawn before it
// and not what comes after, in the entity order or in the order of the space's
// SORTENTSTABLE; a layout shows model space through its viewports, clipped to
// them, without the layers frozen in them.
#include <gtest/gtest.h>

#include <QXmlStreamReader>

#include "RenderTestSupport.h"
#include "TestFiles.h"

namespace korva::test {
namespace {

const QColor kRed(255, 0, 0), kBlue(0, 0, 255);

// A red line along y = 50 and a blue one along x = 50, both from 0 to 100.
std::string redLine(std::string_view handle) {
    return dxfTags({{0, "LINE"}, {5, handle}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {62, "1"}, {370, "60"},
                    {100, "AcDbLine"}, {10, "0"}, {20, "50"}, {30, "0"}, {11, "100"}, {21, "50"}, {31, "0"}});
}
std::string blueLine(std::string_view handle) {
    return dxfTags({{0, "LINE"}, {5, handle}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {62, "5"}, {370, "60"},
                    {100, "AcDbLine"}, {10, "50"}, {20, "0"}, {30, "0"}, {11, "50"}, {21, "100"}, {31, "0"}});
}

// A wipeout over the square (30, 30) - (70, 70): a one-pixel image 40 units wide, clipped to all of it.
std::string wipeout(std::string_view handle) {
    return dxfTags({{0, "WIPEOUT"}, {5, handle}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbWipeout"},
                    {90, "0"}, {10, "30"}, {20, "30"}, {30, "0"}, {11, "40"}, {21, "0"}, {31, "0"}, {12, "0"},
                    {22, "40"}, {32, "0"}, {13, "1"}, {23, "1"}, {70, "7"}, {280, "1"}, {281, "50"}, {282, "50"},
                    {283, "0"}, {71, "2"}, {91, "5"}, {14, "-0.5"}, {24, "-0.5"}, {14, "0.5"}, {24, "-0.5"},
                    {14, "0.5"}, {24, "0.5"}, {14, "-0.5"}, {24, "0.5"}, {14, "-0.5"}, {24, "-0.5"}});
}

struct OrderCase {
    const char* name;
    std::string entities;
    std::string sortPairs;  // 331 entity / 5 sort handle pairs of model space's SORTENTSTABLE; empty: none
    bool redShows;          // at (40, 50), inside the wipeout
    bool blueShows;         // at (50, 40)
};

void PrintTo(const OrderCase& c, std::ostream* out) { *out << c.name; }

class WipeoutOrder : public ::testing::TestWithParam<OrderCase> {};

// The wipeout hides the line drawn before it and leaves the one drawn after it.
TEST_P(WipeoutOrder, MasksOnlyWhatLiesBelow) {
    const OrderCase& c = GetParam();
    DrawingParts parts;
    parts.entities = c.entities;
    if (!c.sortPairs.empty()) {
        parts.modelSpaceDictionary = "A0";
        parts.objects = dxfTags({{0, "DICTIONARY"}, {5, "A0"}, {330, "1F"}, {100, "AcDbDictionary"}, {280, "0"},
                                 {281, "1"}, {3, "ACAD_SORTENTS"}, {360, "A1"}}) +
                        dxfTags({{0, "SORTENTSTABLE"}, {5, "A1"}, {330, "A0"}, {100, "AcDbSortentsTable"},
                                 {330, "1F"}}) +
                        c.sortPairs;
    }
    const auto drawing = loadDrawing(drawingDxf(parts));
    ASSERT_TRUE(drawing);
    const render::RenderedImage rendered = renderSharp(*drawing);
    EXPECT_EQ(colorAt(rendered, 40, 50).rgb() == kRed.rgb(), c.redShows);
    EXPECT_EQ(colorAt(rendered, 50, 40).rgb() == kBlue.rgb(), c.blueShows);
    EXPECT_EQ(colorAt(rendered, 10, 50).rgb(), kRed.rgb()) << "outside the wipeout the red line shows";
    EXPECT_EQ(colorAt(rendered, 50, 10).rgb(), kBlue.rgb()) << "outside the wipeout the blue line shows";
}

INSTANTIATE_TEST_SUITE_P(
    Render, WipeoutOrder,
    ::testing::Values(
        OrderCase{"EntityOrder", redLine("100") + wipeout("101") + blueLine("102"), "", false, true},
        OrderCase{"WipeoutFirst", wipeout("100") + redLine("101") + blueLine("102"), "", true, true},
        OrderCase{"SortTableBringsWipeoutToTop", redLine("100") + wipeout("101") + blueLine("102"),
                  dxfTags({{331, "101"}, {5, "200"}}), false, false},
        OrderCase{"SortTableSendsRedAboveBlue", redLine("100") + wipeout("101") + blueLine("102"),
                  dxfTags({{331, "100"}, {5, "200"}}), true, true}),
    [](const ::testing::TestParamInfo<OrderCase>& param) { return std::string(param.param.name); });

// A layout: a red model line along y = 50 far beyond the view and a green one
// along y = 60 on a layer frozen in the viewport; in paper space a viewport
// centred at (150, 100), 100 x 100 with a blue frame, looking at model (50, 50)
// at 1:2, and a blue line along y = 20.
std::unique_ptr<db::Drawing> layoutDrawing() {
    DrawingParts parts;
    parts.layoutIsCurrent = true;
    parts.layers = layerRecord("HIDDEN", 0x200, 3);
    parts.entities =
        dxfTags({{0, "LINE"}, {5, "100"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {62, "1"}, {370, "60"},
                 {100, "AcDbLine"}, {10, "-1000"}, {20, "50"}, {30, "0"}, {11, "1000"}, {21, "50"}, {31, "0"}}) +
        dxfTags({{0, "LINE"}, {5, "101"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "HIDDEN"}, {370, "60"},
                 {100, "AcDbLine"}, {10, "-1000"}, {20, "60"}, {30, "0"}, {11, "1000"}, {21, "60"}, {31, "0"}}) +
        dxfTags({{0, "VIEWPORT"}, {5, "110"}, {330, "1B"}, {100, "AcDbEntity"}, {67, "1"}, {8, "0"}, {62, "5"},
                 {370, "60"}, {100, "AcDbViewport"}, {10, "150"}, {20, "100"}, {30, "0"}, {40, "100"}, {41, "100"},
                 {68, "2"}, {69, "2"}, {12, "50"}, {22, "50"}, {16, "0"}, {26, "0"}, {36, "1"}, {17, "0"}, {27, "0"},
                 {37, "0"}, {45, "200"}, {51, "0"}, {341, "200"}, {90, "32864"}}) +
        dxfTags({{0, "LINE"}, {5, "111"}, {330, "1B"}, {100, "AcDbEntity"}, {67, "1"}, {8, "0"}, {62, "5"},
                 {370, "60"}, {100, "AcDbLine"}, {10, "100"}, {20, "20"}, {30, "0"}, {11, "200"}, {21, "20"},
                 {31, "0"}});
    return loadDrawing(drawingDxf(parts));
}

// Model space shows through the viewport at its scale, clipped to its window, without the frozen layer.
TEST(RenderLayout, ViewportShowsModelSpaceClippedToItsWindow) {
    const auto drawing = layoutDrawing();
    ASSERT_TRUE(drawing);
    const render::RenderedImage rendered = renderSharp(*drawing);
    ASSERT_TRUE(rendered.frame.layout);
    // Model (50, 50) lands on the viewport's centre; model y = 60 lands at paper y = 105.
    EXPECT_EQ(colorAt(rendered, 150, 100).rgb(), kRed.rgb());
    EXPECT_EQ(colorAt(rendered, 120, 100).rgb(), kRed.rgb());
    EXPECT_TRUE(isWhite(colorAt(rendered, 150, 105))) << "the layer frozen in the viewport";
    EXPECT_EQ(colorAt(rendered, 150, 20).rgb(), kBlue.rgb()) << "paper space";
    EXPECT_EQ(colorAt(rendered, 100, 70).rgb(), kBlue.rgb()) << "the viewport's frame";
    EXPECT_EQ(countPixels(
                  rendered, [](double x, double y) { return (x < 99 || x > 201) && y > 45 && y < 55; },
                  [](QColor c) { return c.rgb() == QColor(255, 0, 0).rgb(); }),
              0)
        << "the model line outside the window";
}

// Asked for model space, the same drawing shows the model lines and no paper space.
TEST(RenderLayout, ModelSpaceOnRequest) {
    const auto drawing = layoutDrawing();
    render::RenderOptions options;
    options.space = render::PictureSpace::Model;
    options.antialiasing = false;
    std::string error;
    const auto rendered = render::renderImage(*drawing, options, error);
    ASSERT_TRUE(rendered) << error;
    EXPECT_FALSE(rendered->frame.layout);
    EXPECT_EQ(colorAt(*rendered, 0, 50).rgb(), kRed.rgb());
    EXPECT_EQ(colorAt(*rendered, 0, 60).rgb(), QColor(0, 255, 0).rgb()) << "frozen only in the viewport";
}

// In SVG, which has no clipping of its own here, the viewport's contents sit in a clipped group.
TEST(RenderLayout, SvgClipsViewportContents) {
    const auto drawing = layoutDrawing();
    TempDir dir;
    const std::string path = dir.file("layout.svg").string();
    std::string error;
    ASSERT_TRUE(render::renderDrawing(*drawing, path, {}, error)) << error;
    QXmlStreamReader xml(QByteArray::fromStdString(readFileBytes(path)));
    int clipPaths = 0, clippedGroups = 0;
    bool redInsideClip = false;
    int clippedDepth = 0;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            if (clippedDepth > 0) ++clippedDepth;
            if (xml.name() == QLatin1String("clipPath")) ++clipPaths;
            if (xml.attributes().hasAttribute("clip-path")) {
                ++clippedGroups;
                clippedDepth = 1;
            }
            if (clippedDepth > 0 && xml.attributes().value("stroke") == QLatin1String("#ff0000")) redInsideClip = true;
        } else if (token == QXmlStreamReader::EndElement && clippedDepth > 0) {
            --clippedDepth;
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(clipPaths, 1);
    EXPECT_EQ(clippedGroups, 1);
    EXPECT_TRUE(redInsideClip) << "the model line is drawn inside the clipped group";
}

}  // namespace
}  // namespace korva::test
