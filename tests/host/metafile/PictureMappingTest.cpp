// The scale rule of imported pictures (scale 2 gives back the size written)
// and the scale comment that carries the exact scale.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "metafile/PictureMapping.h"
#include "metafile/ScaleComment.h"

namespace korva::metafile {
namespace {

MetafilePicture picture(std::optional<PlaceableHeader> placeable, MapMode mode, std::optional<PointS> origin,
                        std::optional<PointS> extent, std::vector<std::vector<uint8_t>> comments = {}) {
    MetafilePicture p;
    p.placeable = placeable;
    p.mapMode = mode;
    p.windowOrigin = origin;
    p.windowExtent = extent;
    p.comments = std::move(comments);
    return p;
}

// Where a logical point lands once the block is inserted at scale 2.
LogicalPoint atScaleTwo(const PictureMapping& mapping, LogicalPoint p) {
    const LogicalPoint d = mapping.toDrawing(p);
    return {2 * d.x, 2 * d.y};
}

TEST(PictureMapping, TheScaleRuleForEachKindOfFile) {
    const ScaleComment comment{400.0, 10.0, 20.0};
    const auto commentData = encodeScaleComment(comment);
    const struct {
        const char* name;
        MetafilePicture content;
        LogicalPoint logical;
        LogicalPoint expected;  // at scale 2, relative to the base point
        PictureMapping::Source source;
    } cases[] = {
        {"the comment's k, whatever the header says",
         picture(PlaceableHeader{{0, 0, 100, 100}, 1440}, MapMode::Anisotropic, PointS{-100, -200}, PointS{32000, 32000},
                 {commentData}),
         {300, 200}, {1.0, -1.0}, PictureMapping::Source::ScaleComment},
        {"the placeable header's inch",
         picture(PlaceableHeader{{0, 0, 1000, 1000}, 1000}, MapMode::Anisotropic, PointS{0, 0}, PointS{1000, 1000}),
         {500, 250}, {0.5, -0.25}, PictureMapping::Source::PlaceableHeader},
        {"the window stretched over the placeable box",
         picture(PlaceableHeader{{0, 0, 2000, 1000}, 1000}, MapMode::Anisotropic, PointS{0, 0}, PointS{1000, 1000}),
         {500, 250}, {1.0, -0.25}, PictureMapping::Source::PlaceableHeader},
        {"the box's corner without a window origin",
         picture(PlaceableHeader{{100, 100, 1100, 1100}, 1000}, MapMode::Text, std::nullopt, std::nullopt),
         {600, 100}, {0.5, 0.0}, PictureMapping::Source::PlaceableHeader},
        {"high metric: y up, 2540 per inch",
         picture(std::nullopt, MapMode::HighMetric, std::nullopt, std::nullopt), {2540, 1270}, {1.0, 0.5},
         PictureMapping::Source::MapMode},
        {"twips", picture(std::nullopt, MapMode::Twips, PointS{1440, 0}, std::nullopt), {2880, -1440}, {1.0, -1.0},
         PictureMapping::Source::MapMode},
        {"anisotropic with a negative y extent turns y up",
         picture(std::nullopt, MapMode::Anisotropic, std::nullopt, PointS{100, -100}), {1440, 720}, {1.0, 0.5},
         PictureMapping::Source::MapMode},
        {"text mode: pixels of 1/96 inch", picture(std::nullopt, MapMode::Text, std::nullopt, std::nullopt), {96, 48},
         {1.0, -0.5}, PictureMapping::Source::MapMode},
    };
    for (const auto& c : cases) {
        const PictureMapping mapping = pictureMapping(c.content);
        EXPECT_EQ(mapping.source, c.source) << c.name;
        const LogicalPoint at = atScaleTwo(mapping, c.logical);
        EXPECT_NEAR(at.x, c.expected.x, 1e-12) << c.name;
        EXPECT_NEAR(at.y, c.expected.y, 1e-12) << c.name;
    }
}

TEST(ScaleComment, TravelsExactlyAndRefusesOtherData) {
    const ScaleComment original{65534.0 / 3.0, -123456.789, 1e-7};
    const auto data = encodeScaleComment(original);
    const auto decoded = decodeScaleComment(data);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->unitsPerDrawingUnit, original.unitsPerDrawingUnit);
    EXPECT_EQ(decoded->cornerX, original.cornerX);
    EXPECT_EQ(decoded->cornerY, original.cornerY);

    auto changed = [&](size_t index, uint8_t value) {
        auto copy = data;
        copy[index] = value;
        return copy;
    };
    const auto nan = encodeScaleComment({std::numeric_limits<double>::quiet_NaN(), 0, 0});
    const auto negative = encodeScaleComment({-2.0, 0, 0});
    const auto infiniteCorner = encodeScaleComment({2.0, std::numeric_limits<double>::infinity(), 0});
    // So small that the drawing scale, its inverse, would be infinite.
    const auto vanishing = encodeScaleComment({std::numeric_limits<double>::denorm_min(), 0, 0});
    const std::vector<uint8_t> shortened(data.begin(), data.end() - 1);
    for (const auto& bad : {changed(0, 'k'), changed(16, 2), nan, negative, infiniteCorner, vanishing, shortened}) {
        EXPECT_FALSE(decodeScaleComment(bad));
    }
}

}  // namespace
}  // namespace korva::metafile
