// Picture files: the extension chooses PNG, SVG or PDF, each a valid file of
// its kind holding the drawing; unknown extensions and unwritable places fail
// with a message and leave no file; every drawing of the corpus renders.
#include <gtest/gtest.h>

#include <QImage>
#include <QXmlStreamReader>

#include <regex>

#include "RenderTestSupport.h"
#include "TestFiles.h"
#include "dxf/DxfReader.h"

namespace korva::test {
namespace {

std::unique_ptr<db::Drawing> redCircleDrawing() {
    DrawingParts parts;
    parts.entities = dxfTags({{0, "CIRCLE"}, {5, "100"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {62, "1"},
                              {370, "100"}, {100, "AcDbCircle"}, {10, "0"}, {20, "0"}, {30, "0"}, {40, "10"}}) +
                     dxfTags({{0, "TEXT"}, {5, "101"}, {330, "1F"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbText"},
                              {10, "-5"}, {20, "-2"}, {30, "0"}, {40, "3"}, {1, "AB"}});
    return loadDrawing(drawingDxf(parts));
}

// A PNG holds the picture at the asked size: the long side, the aspect of the extents, red on the circle.
TEST(RenderFiles, PngHoldsThePicture) {
    TempDir dir;
    const auto drawing = redCircleDrawing();
    render::RenderOptions options;
    options.longSide = 300;
    std::string error;
    const std::string path = dir.file("circle.PNG").string();
    ASSERT_TRUE(render::renderDrawing(*drawing, path, options, error)) << error;
    QImage image;
    ASSERT_TRUE(image.load(QString::fromStdString(path), "PNG"));
    EXPECT_EQ(image.width(), 300);
    EXPECT_EQ(image.height(), 300);
    // The circle's right edge: x = 10 lands at the margin (9 pixels) from the right side.
    const QColor rightmost = image.pixelColor(image.width() - 9 - 1, 150);
    EXPECT_GT(rightmost.red(), 200);
    EXPECT_LT(rightmost.green(), 100);
}

// An SVG is well-formed XML with an svg root that holds paths in the circle's red.
TEST(RenderFiles, SvgIsValidAndHoldsPaths) {
    TempDir dir;
    const auto drawing = redCircleDrawing();
    std::string error;
    const std::string path = dir.file("circle.svg").string();
    ASSERT_TRUE(render::renderDrawing(*drawing, path, {}, error)) << error;
    const std::string text = readFileBytes(path);
    QXmlStreamReader xml(QByteArray::fromStdString(text));
    int paths = 0;
    QString root;
    bool red = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (root.isEmpty()) root = xml.name().toString();
        if (xml.name() == QLatin1String("path") || xml.name() == QLatin1String("polyline")) ++paths;
        if (xml.name() == QLatin1String("g") && xml.attributes().value("stroke") == QLatin1String("#ff0000")) red = true;
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(root, QStringLiteral("svg"));
    EXPECT_GE(paths, 2) << "the circle and the text";
    EXPECT_TRUE(red) << "the circle's stroke";
}

// A PDF starts with its header and has a page.
TEST(RenderFiles, PdfHasAPage) {
    TempDir dir;
    const auto drawing = redCircleDrawing();
    std::string error;
    const std::string path = dir.file("circle.pdf").string();
    ASSERT_TRUE(render::renderDrawing(*drawing, path, {}, error)) << error;
    const std::string bytes = readFileBytes(path);
    EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
    EXPECT_TRUE(std::regex_search(bytes, std::regex("/Type\\s*/Page[^s]"))) << "no page object";
}

struct BadTarget {
    const char* name;
    const char* file;
    const char* says;  // part of the message
};

void PrintTo(const BadTarget& c, std::ostream* out) { *out << c.name; }

class RenderFailures : public ::testing::TestWithParam<BadTarget> {};

// A picture that cannot be made fails with a message naming the file, and writes nothing.
TEST_P(RenderFailures, FailWithAMessageAndNoFile) {
    const BadTarget& c = GetParam();
    TempDir dir;
    const auto drawing = redCircleDrawing();
    const std::string path = (dir.path() / c.file).string();
    std::string error;
    EXPECT_FALSE(render::renderDrawing(*drawing, path, {}, error));
    EXPECT_NE(error.find(path), std::string::npos) << error;
    EXPECT_NE(error.find(c.says), std::string::npos) << error;
    EXPECT_FALSE(std::filesystem::exists(path));
}

INSTANTIATE_TEST_SUITE_P(
    Render, RenderFailures,
    ::testing::Values(BadTarget{"UnknownExtension", "plan.bmp", "unknown picture format \".bmp\""},
                      BadTarget{"NoExtension", "plan", "no extension"},
                      BadTarget{"MissingFolder", "no/such/folder/plan.png", "cannot render"}),
    [](const ::testing::TestParamInfo<BadTarget>& param) { return std::string(param.param.name); });

// A failed picture leaves the file that was there.
TEST(RenderFiles, FailureKeepsTheOldFile) {
    TempDir dir;
    const auto drawing = redCircleDrawing();
    const std::string path = dir.file("old.png").string();
    writeFileBytes(path, "old picture");
    render::RenderOptions options;
    options.longSide = 5;  // out of range
    std::string error;
    EXPECT_FALSE(render::renderDrawing(*drawing, path, options, error));
    EXPECT_NE(error.find("long side"), std::string::npos) << error;
    EXPECT_EQ(readFileBytes(path), "old picture");
}

// Every corpus drawing renders (to an image in memory, and its current space) without failing.
TEST(RenderFiles, EveryCorpusDrawingRenders) {
    render::RenderOptions options;
    options.longSide = 320;
    size_t rendered = 0;
    for (const auto& file : corpusFiles()) {
        auto result = dxf::readDxfFile(file.string());
        if (!result.ok()) continue;  // the reader's own tests cover files it refuses
        std::string error;
        const auto picture = render::renderImage(*result.drawing, options, error);
        EXPECT_TRUE(picture.has_value()) << file.filename() << ": " << error;
        if (picture) {
            EXPECT_EQ(std::max(picture->image.width(), picture->image.height()), 320) << file.filename();
            ++rendered;
        }
    }
    EXPECT_GE(rendered, 40u);
}

// Every corpus drawing's model space also writes as SVG and PDF.
TEST(RenderFiles, CorpusModelSpacesWriteAsSvgAndPdf) {
    TempDir dir;
    render::RenderOptions options;
    options.longSide = 200;
    options.space = render::PictureSpace::Model;
    for (const auto& file : corpusFiles()) {
        auto result = dxf::readDxfFile(file.string());
        if (!result.ok()) continue;
        for (const char* extension : {".svg", ".pdf"}) {
            std::string error;
            const std::string out = dir.file(file.stem().string() + extension).string();
            EXPECT_TRUE(render::renderDrawing(*result.drawing, out, options, error)) << error;
        }
    }
}

}  // namespace
}  // namespace korva::test
