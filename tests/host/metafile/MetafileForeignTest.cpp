// Metafiles as other programs write them, built word by word: no placeable
// header or no comment, other map modes, the rectangle and ellipse family,
// records the reader does not know (skipped, counted, and still taking their
// slot in the object table), and damaged files refused with their reason.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "MetafileTestBytes.h"
#include "metafile/MetafileReader.h"

namespace korva::metafile {
namespace {

using test::metafile::eofRecord;
using test::metafile::metafileOf;
using test::metafile::Placeable;
using test::metafile::record;

MetafilePicture readGood(const std::vector<uint8_t>& bytes) {
    MetafileReadResult result = readMetafile(bytes);
    EXPECT_TRUE(result.ok()) << result.error;
    return result.picture;
}

double distanceFrom(const LogicalPoint& p, double cx, double cy) { return std::hypot(p.x - cx, p.y - cy); }

TEST(MetafileForeign, AFileWithoutPlaceableHeaderInTheTextMode) {
    const MetafilePicture picture = readGood(metafileOf(
        {record(0x0103, {1}), record(0x0214, {20, 10}), record(0x0213, {40, 30}), record(0x0213, {0, 0}), eofRecord()},
        nullptr));
    EXPECT_FALSE(picture.placeable);
    EXPECT_EQ(picture.mapMode, MapMode::Text);
    ASSERT_EQ(picture.shapes.size(), 2u);
    EXPECT_EQ(picture.shapes[0].contours[0], (std::vector<LogicalPoint>{{10, 20}, {30, 40}})) << "y comes first";
    EXPECT_EQ(picture.shapes[1].contours[0].front(), (LogicalPoint{30, 40})) << "lines chain from the last point";
    EXPECT_EQ(picture.shapes[0].pen, (ColorRef{0, 0, 0})) << "the default pen is black";
}

TEST(MetafileForeign, RectanglesEllipsesArcsPiesAndChords) {
    // Box: left 0, top 0, right 200, bottom 100 (centre 100, 50; radii 100, 50).
    const std::initializer_list<int> box{100, 200, 0, 0};
    // Radials: start towards the right (200, 50), end towards the top (100, 0).
    const std::initializer_list<int> radialsAndBox{0, 100, 50, 200, 100, 200, 0, 0};
    const MetafilePicture picture = readGood(metafileOf({record(0x041B, box), record(0x0418, box), record(0x0817, radialsAndBox),
                                                         record(0x081A, radialsAndBox), record(0x0830, radialsAndBox), eofRecord()},
                                                        nullptr));
    ASSERT_EQ(picture.shapes.size(), 5u);
    EXPECT_EQ(picture.shapes[0].contours[0], (std::vector<LogicalPoint>{{0, 0}, {200, 0}, {200, 100}, {0, 100}}));
    for (size_t i = 1; i < 5; ++i) {
        for (const LogicalPoint& p : picture.shapes[i].contours[0]) {
            if (p == LogicalPoint{100, 50}) continue;  // the pie's centre
            const double onEllipse = std::pow((p.x - 100) / 100, 2) + std::pow((p.y - 50) / 50, 2);
            EXPECT_NEAR(onEllipse, 1.0, 1e-9) << "shape " << i;
        }
    }
    EXPECT_EQ(picture.shapes[1].kind, ShapeKind::Polygon);
    const auto& arc = picture.shapes[2];
    EXPECT_EQ(arc.kind, ShapeKind::Polyline);
    EXPECT_NEAR(distanceFrom(arc.contours[0].front(), 200, 50), 0, 1e-9) << "from the start radial";
    EXPECT_NEAR(distanceFrom(arc.contours[0].back(), 100, 0), 0, 1e-9) << "to the end radial";
    for (const LogicalPoint& p : arc.contours[0]) EXPECT_LE(p.y, 50 + 1e-9) << "a quarter turn as seen: over the top";
    EXPECT_EQ(picture.shapes[3].contours[0].back(), (LogicalPoint{100, 50})) << "the pie closes through the centre";
    EXPECT_EQ(picture.shapes[4].contours[0].size() + 1, picture.shapes[3].contours[0].size()) << "the chord does not";
}

TEST(MetafileForeign, UnknownRecordsAreSkippedButKeepTheirObjectSlots) {
    const MetafilePicture picture = readGood(metafileOf(
        {
            record(0x02FB, {-12, 0, 0, 0, 400, 0, 0, 0, 0}),    // CREATEFONTINDIRECT: slot 0
            record(0x02FA, {0, 1, 0, 0x00FF, 0}),                // a red pen: slot 1
            record(0x0201, {0x00FF, 0x0000}),                    // SETBKCOLOR: not played
            record(0x012D, {1}),                                 // select slot 1: the pen
            record(0x0325, {2, 0, 0, 5, 5}),
            record(0x0626, {0x0001, 2, 0}),                      // an escape that is no comment
            eofRecord(),
        },
        nullptr));
    ASSERT_EQ(picture.shapes.size(), 1u);
    EXPECT_EQ(picture.shapes[0].pen, (ColorRef{255, 0, 0})) << "the pen is object 1, after the font";
    EXPECT_EQ(picture.skippedRecords, 3u);
    EXPECT_TRUE(picture.comments.empty());
    EXPECT_EQ(picture.recordCount, 7u);
}

TEST(MetafileForeign, DamagedFilesAreRefusedWithTheirReason) {
    const Placeable box;
    std::vector<uint8_t> badChecksum = metafileOf({eofRecord()}, &box);
    badChecksum[20] ^= 0x01;
    std::vector<uint8_t> notAMetafile = metafileOf({eofRecord()}, nullptr);
    notAMetafile[0] = 0x50;
    std::vector<uint8_t> shortHeader = metafileOf({eofRecord()}, nullptr);
    shortHeader[2] = 8;
    std::vector<uint8_t> truncated = metafileOf({record(0x0325, {2, 0, 0, 5, 5}), eofRecord()}, nullptr);
    truncated.resize(truncated.size() - 4);
    std::vector<uint8_t> zeroInch = metafileOf({eofRecord()}, nullptr);
    {
        Placeable noUnits;
        noUnits.inch = 0;
        zeroInch = metafileOf({eofRecord()}, &noUnits);
    }
    std::vector<uint8_t> recordTooSmall = metafileOf({record(0x0325, {}), eofRecord()}, nullptr);
    recordTooSmall[18] = 2;  // the first record's size: 2 words
    const struct {
        const char* name;
        std::vector<uint8_t> bytes;
        std::string reason;
    } cases[] = {
        {"empty", {}, "too short"},
        {"wrong key", notAMetafile, "not a metafile"},
        {"checksum", badChecksum, "checksum"},
        {"header size", shortHeader, "8 words instead of 9"},
        {"zero units per inch", zeroInch, "0 units per inch"},
        {"truncated", truncated, "truncated"},
        {"record smaller than its header", recordTooSmall, "less than its own header"},
        {"points beyond the record", metafileOf({record(0x0325, {3, 0, 0, 5, 5}), eofRecord()}, nullptr), "3 points"},
        {"negative count", metafileOf({record(0x0324, {-1}), eofRecord()}, nullptr), "negative"},
        {"polygon counts beyond the record", metafileOf({record(0x0538, {2, 1, 1, 0, 0}), eofRecord()}, nullptr),
         "2 points in 2 polygons"},
        {"escape data beyond the record", metafileOf({record(0x0626, {0x000F, 10, 0}), eofRecord()}, nullptr), "10 bytes"},
        {"pen too short", metafileOf({record(0x02FA, {0, 1}), eofRecord()}, nullptr), "need 10 bytes"},
        {"arc too short", metafileOf({record(0x0817, {0, 0, 0, 0}), eofRecord()}, nullptr), "need 16 bytes"},
        {"no end record", metafileOf({record(0x0103, {8})}, nullptr), "without an end-of-file record"},
    };
    for (const auto& c : cases) {
        const MetafileReadResult result = readMetafile(c.bytes);
        ASSERT_FALSE(result.ok()) << c.name;
        EXPECT_NE(result.error.find(c.reason), std::string::npos) << c.name << ": " << result.error;
    }
}

TEST(MetafileForeign, BytesAfterTheMetafileAreNotRead) {
    std::vector<uint8_t> bytes = metafileOf({record(0x0325, {2, 0, 0, 5, 5}), eofRecord()}, nullptr);
    bytes.insert(bytes.end(), {0xFF, 0xFF, 0xFF, 0xFF, 0x25, 0x03});
    const MetafilePicture picture = readGood(bytes);
    EXPECT_EQ(picture.shapes.size(), 1u);
    EXPECT_EQ(picture.recordCount, 2u);
}

}  // namespace
}  // namespace korva::metafile
