// The writer's records read back by the reader: every record kind the writer
// makes, with the pens and brushes selected when each shape was drawn, and the
// file's header fields checked from the bytes themselves.
#include <gtest/gtest.h>

#include <vector>

#include "MetafileTestBytes.h"
#include "metafile/MetafileReader.h"
#include "metafile/MetafileWriter.h"
#include "metafile/ScaleComment.h"

namespace korva::metafile {
namespace {

std::vector<LogicalPoint> logical(const std::vector<PointS>& points) {
    std::vector<LogicalPoint> out;
    for (const PointS& p : points) out.push_back({static_cast<double>(p.x), static_cast<double>(p.y)});
    return out;
}

MetafilePicture readBack(const MetafileWriter& writer, const std::optional<PlaceableHeader>& placeable) {
    const std::vector<uint8_t> bytes = writer.finish(placeable);
    MetafileReadResult result = readMetafile(bytes);
    EXPECT_TRUE(result.ok()) << result.error;
    return result.picture;
}

TEST(MetafileRoundTrip, EachDrawingRecordComesBackWithItsPoints) {
    const std::vector<PointS> path{{-32768, 0}, {0, 32767}, {100, -5}};
    const std::vector<PointS> square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    const std::vector<PointS> hole{{2, 2}, {2, 8}, {8, 8}};
    const struct {
        const char* name;
        void (*draw)(MetafileWriter&, const std::vector<PointS>&, const std::vector<PointS>&, const std::vector<PointS>&);
        ShapeKind kind;
        RecordFunction source;
        std::vector<std::vector<PointS>> contours;
    } cases[] = {
        {"polyline", [](MetafileWriter& w, auto& p, auto&, auto&) { w.polyline(p); }, ShapeKind::Polyline,
         RecordFunction::Polyline, {path}},
        {"polygon", [](MetafileWriter& w, auto&, auto& s, auto&) { EXPECT_TRUE(w.polygon(s)); }, ShapeKind::Polygon,
         RecordFunction::Polygon, {square}},
        {"poly-polygon", [](MetafileWriter& w, auto&, auto& s, auto& h) { EXPECT_TRUE(w.polyPolygon({s, h})); },
         ShapeKind::Polygon, RecordFunction::PolyPolygon, {square, hole}},
        {"move and line", [](MetafileWriter& w, auto&, auto&, auto&) { w.moveTo({5, -7}); w.lineTo({-3, 9}); },
         ShapeKind::Line, RecordFunction::LineTo, {{{5, -7}, {-3, 9}}}},
        {"pixel", [](MetafileWriter& w, auto&, auto&, auto&) { w.setPixel({12, 34}, {1, 2, 3}); }, ShapeKind::Pixel,
         RecordFunction::SetPixel, {{{12, 34}}}},
    };
    for (const auto& c : cases) {
        MetafileWriter writer;
        c.draw(writer, path, square, hole);
        const MetafilePicture picture = readBack(writer, std::nullopt);
        ASSERT_EQ(picture.shapes.size(), 1u) << c.name;
        const PictureShape& shape = picture.shapes[0];
        EXPECT_EQ(shape.kind, c.kind) << c.name;
        EXPECT_EQ(shape.source, c.source) << c.name;
        ASSERT_EQ(shape.contours.size(), c.contours.size()) << c.name;
        for (size_t i = 0; i < c.contours.size(); ++i) EXPECT_EQ(shape.contours[i], logical(c.contours[i])) << c.name;
        EXPECT_EQ(picture.skippedRecords, 0u) << c.name;
    }
}

TEST(MetafileRoundTrip, MappingRecordsAndTheCommentAreKept) {
    MetafileWriter writer;
    writer.setMapMode(MapMode::Anisotropic);
    writer.setWindowOrg({-32767, -100});
    writer.setWindowExt({65534 / 2, 200});
    writer.setPolyFillMode(PolyFillMode::Winding);
    EXPECT_TRUE(writer.comment(encodeScaleComment({123.456789, -1.5, 2e10})));
    const std::vector<uint8_t> odd{1, 2, 3};
    EXPECT_TRUE(writer.comment(odd));  // an odd length is padded to whole words
    const MetafilePicture picture = readBack(writer, PlaceableHeader{{-1, -2, 3, 4}, 2540});
    EXPECT_EQ(picture.mapMode, MapMode::Anisotropic);
    EXPECT_EQ(picture.windowOrigin, (PointS{-32767, -100}));
    EXPECT_EQ(picture.windowExtent, (PointS{32767, 200}));
    ASSERT_TRUE(picture.placeable);
    EXPECT_EQ(picture.placeable->boundingBox, (RectS{-1, -2, 3, 4}));
    EXPECT_EQ(picture.placeable->unitsPerInch, 2540);
    ASSERT_EQ(picture.comments.size(), 2u);
    EXPECT_EQ(picture.comments[1], odd);
    const auto comment = findScaleComment(picture);
    ASSERT_TRUE(comment);
    EXPECT_EQ(comment->unitsPerDrawingUnit, 123.456789) << "doubles travel exactly";
    EXPECT_EQ(comment->cornerX, -1.5);
    EXPECT_EQ(comment->cornerY, 2e10);
}

TEST(MetafileRoundTrip, ShapesTakeThePenAndBrushSelectedWhenDrawn) {
    MetafileWriter writer;
    const std::vector<PointS> triangle{{0, 0}, {4, 0}, {0, 4}};
    const uint16_t red = writer.createPen(kPenSolid, 0, {255, 0, 0});
    const uint16_t blue = writer.createBrush(kBrushSolid, {0, 0, 255});
    EXPECT_NE(red, blue);
    writer.selectObject(red);
    writer.selectObject(blue);
    writer.polygon(triangle);
    writer.deleteObject(red);
    const uint16_t nullPen = writer.createPen(kPenNull, 0, {9, 9, 9});
    EXPECT_EQ(nullPen, red) << "the freed slot is taken again";
    const uint16_t hollow = writer.createBrush(kBrushNull, {0, 0, 0});
    writer.selectObject(nullPen);
    writer.selectObject(hollow);
    writer.polygon(triangle);
    writer.polyline(triangle);
    const std::vector<uint8_t> bytes = writer.finish(std::nullopt);
    EXPECT_EQ(bytes[10], 3) << "NumberOfObjects: three slots were in use at once";
    const MetafileReadResult result = readMetafile(bytes);
    ASSERT_TRUE(result.ok()) << result.error;
    const auto& shapes = result.picture.shapes;
    ASSERT_EQ(shapes.size(), 3u);
    EXPECT_EQ(shapes[0].pen, (ColorRef{255, 0, 0}));
    EXPECT_EQ(shapes[0].brush, (ColorRef{0, 0, 255}));
    EXPECT_FALSE(shapes[1].pen) << "the null pen";
    EXPECT_FALSE(shapes[1].brush) << "the null brush";
    EXPECT_FALSE(shapes[2].brush) << "polylines are never filled";
}

TEST(MetafileRoundTrip, LongPolylinesSplitIntoRecordsThatShareTheirJoins) {
    std::vector<PointS> points;
    for (int i = 0; i < 70000; ++i) points.push_back({static_cast<int16_t>(i % 30000), static_cast<int16_t>(i / 30000)});
    MetafileWriter writer;
    writer.polyline(points);
    EXPECT_FALSE(writer.polygon(points)) << "a polygon cannot be split";
    const MetafilePicture picture = readBack(writer, std::nullopt);
    ASSERT_EQ(picture.shapes.size(), 3u);
    EXPECT_EQ(picture.shapes[0].contours[0].size(), 32767u);
    EXPECT_EQ(picture.shapes[1].contours[0].front(), picture.shapes[0].contours[0].back());
    size_t total = 0;
    for (const auto& shape : picture.shapes) total += shape.contours[0].size();
    EXPECT_EQ(total, points.size() + 2) << "each join is written twice";
    EXPECT_EQ(picture.shapes[2].contours[0].back(), logical({points.back()})[0]);
}

// The header fields as another reader sees them in the bytes: key, checksum,
// the metafile's size in words, the largest record, and record sizes that chain
// to the end-of-file record.
TEST(MetafileRoundTrip, HeaderFieldsAgreeWithTheBytes) {
    MetafileWriter writer;
    writer.setMapMode(MapMode::Anisotropic);
    writer.createPen(kPenSolid, 0, {1, 2, 3});
    writer.polyline(std::vector<PointS>(100, PointS{7, 8}));
    writer.comment(std::vector<uint8_t>(5, 0xAB));
    const std::vector<uint8_t> bytes = writer.finish(PlaceableHeader{{-10, -20, 30, 40}, 600});
    auto word = [&](size_t offset) { return static_cast<uint32_t>(bytes[offset] | (bytes[offset + 1] << 8)); };
    auto dword = [&](size_t offset) { return word(offset) | (word(offset + 2) << 16); };
    EXPECT_EQ(dword(0), 0x9AC6CDD7u);
    EXPECT_EQ(static_cast<int16_t>(word(6)), -10);
    EXPECT_EQ(static_cast<int16_t>(word(12)), 40);
    EXPECT_EQ(word(14), 600u);
    EXPECT_EQ(word(20), test::metafile::checksumOfBytes(bytes));
    const size_t header = 22;
    EXPECT_EQ(word(header), 2u) << "a disk metafile";
    EXPECT_EQ(word(header + 2), 9u);
    EXPECT_EQ(dword(header + 6) * 2, bytes.size() - header) << "Size counts every word after the placeable header";
    size_t offset = header + 18, largest = 0, records = 0;
    uint32_t function = 0xFFFF;
    while (offset + 6 <= bytes.size()) {
        const uint32_t size = dword(offset);
        function = word(offset + 4);
        largest = std::max<size_t>(largest, size);
        ++records;
        offset += size * 2;
        if (function == 0) break;
    }
    EXPECT_EQ(function, 0u) << "the last record is the end-of-file record";
    EXPECT_EQ(offset, bytes.size());
    EXPECT_EQ(records, 5u);
    EXPECT_EQ(dword(header + 12), largest);
    EXPECT_EQ(largest, 3u + 1u + 200u) << "the polyline: header, count, 100 points";
}

// Any prefix of a good file is refused, never half-read.
TEST(MetafileRoundTrip, EveryTruncationIsRefused) {
    MetafileWriter writer;
    writer.setMapMode(MapMode::Anisotropic);
    writer.createBrush(kBrushSolid, {1, 1, 1});
    writer.polyPolygon({{{0, 0}, {1, 0}, {1, 1}}, {{5, 5}, {6, 5}, {6, 6}}});
    writer.comment(encodeScaleComment({2.0, 0, 0}));
    const std::vector<uint8_t> bytes = writer.finish(PlaceableHeader{{0, 0, 10, 10}, 1440});
    ASSERT_TRUE(readMetafile(bytes).ok());
    for (size_t length = 0; length < bytes.size(); ++length) {
        const MetafileReadResult result = readMetafile(std::span(bytes).first(length));
        EXPECT_FALSE(result.ok()) << "a prefix of " << length << " bytes";
    }
}

}  // namespace
}  // namespace korva::metafile
