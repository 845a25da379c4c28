// Shapes in pictures: lineweights set the width of strokes, hatches fill or
// pattern their boundary and nothing outside it, texts ink only their measured
// box, polyline widths and bulges, circles and construction lines land where
// their geometry says.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "RenderTestSupport.h"
#include "db/geometry/TextGeometry.h"

namespace korva::test {
namespace {

std::string corners() {
    return dxfTags({{0, "POINT"}, {5, "F0"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbPoint"},
                    {10, "0.0"}, {20, "0.0"}, {30, "0.0"}}) +
           dxfTags({{0, "POINT"}, {5, "F1"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbPoint"},
                    {10, "100.0"}, {20, "100.0"}, {30, "0.0"}});
}

std::unique_ptr<db::Drawing> drawingWith(const std::string& entities) {
    DrawingParts parts;
    parts.entities = corners() + entities;
    return loadDrawing(drawingDxf(parts));
}

// The number of inked pixels in the picture column that holds x, between y0 and y1.
int inkedRunAcross(const render::RenderedImage& rendered, double x, double y0, double y1) {
    const int column = static_cast<int>(std::floor(rendered.frame.viewToPicture.map(QPointF(x, y0)).x()));
    return countPixels(
        rendered,
        [&](double px, double py) {
            return static_cast<int>(std::floor(rendered.frame.viewToPicture.map(QPointF(px, py)).x())) == column &&
                   py > y0 && py < y1;
        },
        isInk);
}

struct WeightCase {
    int lineweight;  // hundredths of a millimetre
    double dotsPerInch;
};

class Lineweights : public ::testing::TestWithParam<WeightCase> {};

// A line's stroke is as many pixels wide as its weight at the resolution (at least one).
TEST_P(Lineweights, StrokeWidthFollowsTheWeight) {
    const WeightCase c = GetParam();
    const auto drawing = drawingWith(dxfTags({{0, "LINE"}, {5, "100"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"},
                                              {370, std::to_string(c.lineweight)}, {100, "AcDbLine"}, {10, "10"},
                                              {20, "50"}, {30, "0"}, {11, "90"}, {21, "50"}, {31, "0"}}));
    const render::RenderedImage rendered = renderSharp(*drawing, 400, c.dotsPerInch);
    const double expected = std::max(1.0, c.lineweight / 100.0 / 25.4 * c.dotsPerInch);
    EXPECT_NEAR(inkedRunAcross(rendered, 50.0, 40.0, 60.0), expected, 1.5);
}

INSTANTIATE_TEST_SUITE_P(Render, Lineweights,
                         ::testing::Values(WeightCase{5, 96.0}, WeightCase{25, 96.0}, WeightCase{100, 96.0},
                                           WeightCase{211, 96.0}, WeightCase{211, 192.0}, WeightCase{50, 300.0}),
                         [](const ::testing::TestParamInfo<WeightCase>& param) {
                             return "Weight" + std::to_string(param.param.lineweight) + "At" +
                                    std::to_string(static_cast<int>(param.param.dotsPerInch)) + "Dpi";
                         });

// A thick weight is measurably thicker than a thin one in the same picture.
TEST(RenderShapes, ThickLineIsThickerThanThinLine) {
    auto line = [](std::string_view handle, std::string_view y, std::string_view weight) {
        return dxfTags({{0, "LINE"}, {5, handle}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {370, weight},
                        {100, "AcDbLine"}, {10, "10"}, {20, y}, {30, "0"}, {11, "90"}, {21, y}, {31, "0"}});
    };
    const auto drawing = drawingWith(line("100", "30", "13") + line("101", "70", "158"));
    const render::RenderedImage rendered = renderSharp(*drawing);
    const int thin = inkedRunAcross(rendered, 50.0, 20.0, 40.0);
    const int thick = inkedRunAcross(rendered, 50.0, 60.0, 80.0);
    EXPECT_GE(thin, 1);
    EXPECT_GE(thick, 3 * thin);
}

std::string squareHatch(std::string_view handle, std::string_view pattern) {
    std::string hatch = dxfTags({{0, "HATCH"}, {5, handle}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {62, "5"},
                                 {100, "AcDbHatch"}, {10, "0"}, {20, "0"}, {30, "0"}, {210, "0"}, {220, "0"},
                                 {230, "1"}, {2, pattern}, {70, pattern == "SOLID" ? "1" : "0"}, {71, "0"},
                                 {91, "1"}, {92, "1"}, {93, "4"}});
    const std::array<std::array<const char*, 4>, 4> edges{{{"20", "20", "80", "20"},
                                                            {"80", "20", "80", "80"},
                                                            {"80", "80", "20", "80"},
                                                            {"20", "80", "20", "20"}}};
    for (const auto& e : edges) hatch += dxfTags({{72, "1"}, {10, e[0]}, {20, e[1]}, {11, e[2]}, {21, e[3]}});
    hatch += dxfTags({{97, "0"}, {75, "0"}, {76, "1"}});
    if (pattern != "SOLID") {
        // Lines at 45 degrees, 2 units apart, dashed 3 on and 1 off.
        hatch += dxfTags({{52, "0"}, {41, "1"}, {77, "0"}, {78, "1"}, {53, "45"}, {43, "0"}, {44, "0"},
                          {45, "-1.4142136"}, {46, "1.4142136"}, {79, "2"}, {49, "3"}, {49, "-1"}});
    }
    return hatch + dxfTags({{98, "0"}});
}

bool insideSquare(double x, double y, double margin) {
    return x > 20 + margin && x < 80 - margin && y > 20 + margin && y < 80 - margin;
}
bool outsideSquare(double x, double y, double margin) {
    return x < 20 - margin || x > 80 + margin || y < 20 - margin || y > 80 + margin;
}

// A solid hatch fills its whole boundary in its colour and nothing beyond it.
TEST(RenderShapes, SolidHatchFillsItsInterior) {
    const auto drawing = drawingWith(squareHatch("100", "SOLID"));
    const render::RenderedImage rendered = renderSharp(*drawing);
    const auto blue = [](QColor c) { return c.rgb() == QColor(0, 0, 255).rgb(); };
    const int inside = countPixels(rendered, [](double x, double y) { return insideSquare(x, y, 1.0); }, isWhite);
    EXPECT_EQ(inside, 0) << "unfilled pixels inside the boundary";
    EXPECT_GT(countPixels(rendered, [](double x, double y) { return insideSquare(x, y, 1.0); }, blue), 10000);
    EXPECT_EQ(countPixels(rendered, [](double x, double y) { return outsideSquare(x, y, 1.0); }, blue), 0);
}

// A pattern hatch draws lines inside its boundary, leaves gaps between them and inks nothing outside.
TEST(RenderShapes, PatternHatchDrawsLinesOnlyInside) {
    const auto drawing = drawingWith(squareHatch("100", "USER"));
    const render::RenderedImage rendered = renderSharp(*drawing);
    const auto inside = [](double x, double y) { return insideSquare(x, y, 1.0); };
    const int inked = countPixels(rendered, inside, isInk);
    const int all = countPixels(rendered, inside, [](QColor) { return true; });
    EXPECT_GT(inked, all / 20) << "pattern lines inside";
    EXPECT_LT(inked, all / 2) << "gaps between the lines";
    EXPECT_EQ(countPixels(rendered, [](double x, double y) { return outsideSquare(x, y, 1.0) && x > 2 && y > 2 && x < 98 && y < 98; },
                          isInk),
              0);
}

struct TextCase {
    const char* name;
    const char* rotation;
    const char* generation;  // 71: 2 backward, 4 upside down
};

void PrintTo(const TextCase& c, std::ostream* out) { *out << c.name; }

class TextInk : public ::testing::TestWithParam<TextCase> {};

bool insideQuad(const std::array<KcGePoint3d, 4>& q, double x, double y, double slack) {
    // Convex quadrilateral, either turn: the point lies on one side of every edge (within slack).
    int sign = 0;
    for (int i = 0; i < 4; ++i) {
        const KcGePoint3d& a = q[i];
        const KcGePoint3d& b = q[(i + 1) % 4];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        const double side = ((b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x)) / length;
        if (std::abs(side) <= slack) continue;
        const int s = side > 0 ? 1 : -1;
        if (sign != 0 && s != sign) return false;
        sign = s;
    }
    return true;
}

// A text's ink lies within the box the database measures for it, however it is turned or mirrored.
TEST_P(TextInk, LiesWithinTheMeasuredBox) {
    const TextCase& c = GetParam();
    const auto drawing = drawingWith(dxfTags({{0, "TEXT"}, {5, "100"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"},
                                              {100, "AcDbText"}, {10, "40"}, {20, "45"}, {30, "0"}, {40, "8"},
                                              {1, "Hxg Kj"}, {50, c.rotation}, {71, c.generation},
                                              {100, "AcDbText"}}));
    const db::ObjectRecord* text = drawing->findByHandle(0x100);
    ASSERT_TRUE(text);
    const auto box = db::geometry::singleLineTextCorners(*text);
    const render::RenderedImage rendered = renderSharp(*drawing, 800);
    const double pixel = 1.0 / rendered.frame.viewToPicture.m11();
    const auto inBox = [&](double x, double y) { return insideQuad(box, x, y, 1.5 * pixel); };
    const auto nearCorners = [](double x, double y) { return std::hypot(x, y) < 3 || std::hypot(x - 100, y - 100) < 3; };
    EXPECT_GT(countPixels(rendered, inBox, isInk), 200) << "the text shows";
    EXPECT_EQ(countPixels(rendered, [&](double x, double y) { return !inBox(x, y) && !nearCorners(x, y); }, isInk), 0)
        << "ink outside the measured box";
}

INSTANTIATE_TEST_SUITE_P(Render, TextInk,
                         ::testing::Values(TextCase{"Plain", "0", "0"}, TextCase{"Turned", "30", "0"},
                                           TextCase{"Backward", "0", "2"}, TextCase{"UpsideDown", "0", "4"},
                                           TextCase{"TurnedAndMirrored", "120", "6"}),
                         [](const ::testing::TestParamInfo<TextCase>& param) { return std::string(param.param.name); });

// An MTEXT's ink lies within its measured box, on both of its lines.
TEST(RenderShapes, MTextInkLiesWithinItsBox) {
    const auto drawing = drawingWith(dxfTags({{0, "MTEXT"}, {5, "100"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"},
                                              {100, "AcDbMText"}, {10, "20"}, {20, "70"}, {30, "0"}, {40, "6"},
                                              {41, "0"}, {71, "1"}, {1, "First line\\PSecond"}}));
    const auto box = db::geometry::mtextCorners(*drawing->findByHandle(0x100));
    const render::RenderedImage rendered = renderSharp(*drawing, 800);
    const double pixel = 1.0 / rendered.frame.viewToPicture.m11();
    const auto inBox = [&](double x, double y) { return insideQuad(box, x, y, 1.5 * pixel); };
    const double middle = (box[0].y + box[3].y) / 2.0;
    EXPECT_GT(countPixels(rendered, [&](double x, double y) { return inBox(x, y) && y > middle; }, isInk), 100);
    EXPECT_GT(countPixels(rendered, [&](double x, double y) { return inBox(x, y) && y < middle; }, isInk), 100);
    const auto nearCorners = [](double x, double y) { return std::hypot(x, y) < 3 || std::hypot(x - 100, y - 100) < 3; };
    EXPECT_EQ(countPixels(rendered, [&](double x, double y) { return !inBox(x, y) && !nearCorners(x, y); }, isInk), 0);
}

struct ProbeCase {
    const char* name;
    std::string entity;
    std::vector<std::array<double, 2>> inked;
    std::vector<std::array<double, 2>> blank;
};

void PrintTo(const ProbeCase& c, std::ostream* out) { *out << c.name; }

class GeometryProbes : public ::testing::TestWithParam<ProbeCase> {};

// Points on an entity's geometry are inked and points off it are not.
TEST_P(GeometryProbes, InkFollowsTheGeometry) {
    const ProbeCase& c = GetParam();
    const auto drawing = drawingWith(c.entity);
    const render::RenderedImage rendered = renderSharp(*drawing);
    for (const auto& [x, y] : c.inked) EXPECT_TRUE(isInk(colorAt(rendered, x, y))) << "(" << x << ", " << y << ")";
    for (const auto& [x, y] : c.blank) EXPECT_TRUE(isWhite(colorAt(rendered, x, y))) << "(" << x << ", " << y << ")";
}

std::string entity(std::string_view type, std::string_view marker, std::initializer_list<std::pair<int, std::string_view>> data) {
    return dxfTags({{0, type}, {5, "100"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {370, "50"},
                    {100, marker}}) +
           dxfTags(data);
}

INSTANTIATE_TEST_SUITE_P(
    Render, GeometryProbes,
    ::testing::Values(
        ProbeCase{"Circle", entity("CIRCLE", "AcDbCircle", {{10, "50"}, {20, "50"}, {30, "0"}, {40, "30"}}),
                  {{80, 50}, {20, 50}, {50, 80}, {50, 20}}, {{50, 50}, {60, 60}}},
        ProbeCase{"ArcCounterClockwise",
                  entity("ARC", "AcDbCircle", {{10, "50"}, {20, "50"}, {30, "0"}, {40, "30"}, {100, "AcDbArc"},
                                               {50, "0"}, {51, "90"}}),
                  {{50, 80}, {80, 50}}, {{20, 50}, {50, 20}}},
        ProbeCase{"BulgeBelowTheChord",
                  entity("LWPOLYLINE", "AcDbPolyline",
                         {{90, "2"}, {70, "0"}, {10, "20"}, {20, "50"}, {42, "1"}, {10, "80"}, {20, "50"}}),
                  {{50, 20}, {20, 50}}, {{50, 80}, {50, 50}}},
        ProbeCase{"ConstantWidthBand",
                  entity("LWPOLYLINE", "AcDbPolyline",
                         {{90, "2"}, {70, "0"}, {43, "10"}, {10, "10"}, {20, "50"}, {10, "90"}, {20, "50"}}),
                  {{50, 46}, {50, 54}, {15, 50}}, {{50, 58}, {50, 42}, {5, 50}}},
        ProbeCase{"TaperedBand",
                  entity("LWPOLYLINE", "AcDbPolyline",
                         {{90, "2"}, {70, "0"}, {10, "10"}, {20, "50"}, {40, "20"}, {41, "0"}, {10, "90"},
                          {20, "50"}}),
                  {{20, 57}, {20, 43}}, {{80, 55}, {80, 45}}},
        ProbeCase{"Ellipse",
                  entity("ELLIPSE", "AcDbEllipse",
                         {{10, "50"}, {20, "50"}, {30, "0"}, {11, "40"}, {21, "0"}, {31, "0"}, {40, "0.5"},
                          {41, "0"}, {42, "6.283185307179586"}}),
                  {{90, 50}, {10, 50}, {50, 70}, {50, 30}}, {{50, 80}, {50, 50}}},
        ProbeCase{"ConstructionLineCrossesThePicture",
                  entity("XLINE", "AcDbXline", {{10, "50"}, {20, "50"}, {30, "0"}, {11, "1"}, {21, "0"}, {31, "0"}}),
                  {{1, 50}, {99, 50}, {50, 50}}, {{50, 60}}},
        ProbeCase{"RayRunsOneWay",
                  entity("RAY", "AcDbRay", {{10, "50"}, {20, "50"}, {30, "0"}, {11, "1"}, {21, "0"}, {31, "0"}}),
                  {{99, 50}, {60, 50}}, {{30, 50}, {1, 50}}},
        ProbeCase{"SolidFilled",
                  entity("SOLID", "AcDbTrace",
                         {{10, "20"}, {20, "20"}, {30, "0"}, {11, "80"}, {21, "20"}, {31, "0"}, {12, "20"},
                          {22, "80"}, {32, "0"}, {13, "80"}, {23, "80"}, {33, "0"}}),
                  {{50, 50}, {25, 75}}, {{10, 50}, {90, 50}}}),
    [](const ::testing::TestParamInfo<ProbeCase>& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace korva::test
