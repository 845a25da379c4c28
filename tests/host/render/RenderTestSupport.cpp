// Test drawings and picture look-ups.
#include "RenderTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "db/DrawingIo.h"
#include "dxf/DxfReader.h"

namespace korva::test {

namespace {

std::string hex(int value) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%X", value);
    return buffer;
}

void insertBefore(std::string& dxf, std::string_view anchor, std::string_view terminator, std::string_view text) {
    const size_t at = dxf.find(anchor);
    ASSERT_NE(at, std::string::npos) << anchor;
    const size_t end = dxf.find(std::string("  0\n") + std::string(terminator), at);
    ASSERT_NE(end, std::string::npos) << terminator;
    dxf.insert(end, text);
}

void replaceOnce(std::string& dxf, std::string_view from, std::string_view to) {
    const size_t at = dxf.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    dxf.replace(at, from.size(), to);
}

}  // namespace

std::string dxfTags(std::initializer_list<std::pair<int, std::string_view>> tags) {
    std::string out;
    for (const auto& [code, value] : tags) {
        const std::string number = std::to_string(code);
        out += std::string(number.size() < 3 ? 3 - number.size() : 0, ' ') + number + "\n";
        out += std::string(value) + "\n";
    }
    return out;
}

std::string drawingDxf(const DrawingParts& parts) {
    std::string dxf(db::emptyDrawingTemplate());
    insertBefore(dxf, "  2\nLAYER\n", "ENDTAB", parts.layers);
    insertBefore(dxf, "  2\nBLOCK_RECORD\n", "ENDTAB", parts.blockRecords);
    insertBefore(dxf, "  2\nBLOCKS\n", "ENDSEC", parts.blocks);
    insertBefore(dxf, "  2\nENTITIES\n", "ENDSEC", parts.entities);
    insertBefore(dxf, "  2\nOBJECTS\n", "ENDSEC", parts.objects);
    if (!parts.modelSpaceDictionary.empty()) {
        replaceOnce(dxf, "BLOCK_RECORD\n  5\n1F\n330\n1\n",
                    "BLOCK_RECORD\n  5\n1F\n102\n{ACAD_XDICTIONARY\n360\n" + parts.modelSpaceDictionary + "\n102\n}\n330\n1\n");
    }
    if (parts.layoutIsCurrent) replaceOnce(dxf, "$TILEMODE\n 70\n     1\n", "$TILEMODE\n 70\n     0\n");
    return dxf;
}

void addBlock(DrawingParts& parts, std::string_view name, int recordHandle, std::string_view entities) {
    const std::string record = hex(recordHandle), begin = hex(recordHandle + 1), end = hex(recordHandle + 2);
    parts.blockRecords += dxfTags({{0, "BLOCK_RECORD"}, {5, record}, {330, "1"}, {100, "AcDbSymbolTableRecord"},
                                   {100, "AcDbBlockTableRecord"}, {2, name}, {70, "0"}, {280, "1"}, {281, "0"}});
    parts.blocks += dxfTags({{0, "BLOCK"}, {5, begin}, {330, record}, {100, "AcDbEntity"}, {8, "0"},
                             {100, "AcDbBlockBegin"}, {2, name}, {70, "0"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"},
                             {3, name}, {1, ""}});
    std::string owned(entities);
    for (size_t at = owned.find("330\nOWNER\n"); at != std::string::npos; at = owned.find("330\nOWNER\n", at)) {
        owned.replace(at + 4, 5, record);
    }
    parts.blocks += owned;
    parts.blocks += dxfTags({{0, "ENDBLK"}, {5, end}, {330, record}, {100, "AcDbEntity"}, {8, "0"},
                             {100, "AcDbBlockEnd"}});
}

std::string layerRecord(std::string_view name, int handle, int color, int flags, int lineweight) {
    const std::string h = hex(handle), c = std::to_string(color), f = std::to_string(flags),
                      w = std::to_string(lineweight);
    return dxfTags({{0, "LAYER"}, {5, h}, {330, "2"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbLayerTableRecord"},
                    {2, name}, {70, f}, {62, c}, {6, "Continuous"}, {370, w}, {390, "F"}});
}

std::unique_ptr<db::Drawing> loadDrawing(const std::string& dxf) {
    dxf::ReadResult result = dxf::readDxf(dxf);
    EXPECT_TRUE(result.ok()) << result.error;
    return std::move(result.drawing);
}

render::RenderedImage renderSharp(const db::Drawing& drawing, int longSide, double dotsPerInch) {
    render::RenderOptions options;
    options.longSide = longSide;
    options.dotsPerInch = dotsPerInch;
    options.antialiasing = false;
    std::string error;
    std::optional<render::RenderedImage> rendered = render::renderImage(drawing, options, error);
    EXPECT_TRUE(rendered.has_value()) << error;
    return rendered ? std::move(*rendered) : render::RenderedImage{};
}

QColor colorAt(const render::RenderedImage& rendered, double x, double y) {
    const QPointF p = rendered.frame.viewToPicture.map(QPointF(x, y));
    const int column = static_cast<int>(std::floor(p.x())), row = static_cast<int>(std::floor(p.y()));
    if (!rendered.image.valid(column, row)) {
        ADD_FAILURE() << "(" << x << ", " << y << ") lies outside the picture";
        return {};
    }
    return rendered.image.pixelColor(column, row);
}

int countPixels(const render::RenderedImage& rendered, const std::function<bool(double x, double y)>& where,
                const std::function<bool(QColor)>& select) {
    const QTransform back = rendered.frame.viewToPicture.inverted();
    int count = 0;
    for (int row = 0; row < rendered.image.height(); ++row) {
        for (int column = 0; column < rendered.image.width(); ++column) {
            const QPointF view = back.map(QPointF(column + 0.5, row + 0.5));
            if (where(view.x(), view.y()) && select(rendered.image.pixelColor(column, row))) ++count;
        }
    }
    return count;
}

}  // namespace korva::test
