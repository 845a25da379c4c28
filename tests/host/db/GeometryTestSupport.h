// Helpers of the entity geometry tests: DXF snippets written one group per line
// ("10 1.5" becomes the two DXF lines "10" and "1.5") and read by the real reader,
// the entities of model space and of blocks, near-equality of points and boxes,
// a fixed text measurer for hand-computed text boxes, and the save-and-reload check.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "TestDrawing.h"
#include "UnitTextMeasurer.h"
#include "DrawingCompare.h"
#include "db/Drawing.h"
#include "db/ObjectAccess.h"
#include "db/TextMetrics.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "geom/Box3d.h"
#include "kcdbdatabase.h"

namespace korva::test {


// A drawing of the given version with these BLOCKS, ENTITIES and OBJECTS sections
// (written as "code value" lines), read by the DXF reader and held by a database.
struct SnippetDrawing {
    std::unique_ptr<KcDbDatabase> database;
    db::Drawing& drawing() const { return database->drawing(); }

    // The top-level entities of model and paper space, in file order.
    db::ObjectRecord& entity(size_t index) const { return *drawing().layoutEntities.at(index); }
    db::ObjectRecord* block(std::string_view name) const { return drawing().tableRecord("BLOCK_RECORD", name); }
    KcDbObjectId id(const db::ObjectRecord& record) const { return db::ObjectAccess::id(&record); }
};

inline SnippetDrawing readSnippet(std::string_view entities, std::string_view blocks = {},
                                  std::string_view version = "AC1032", std::string_view objects = {}) {
    std::string text = dxfLines("0 SECTION\n2 HEADER\n9 $ACADVER\n1 " + std::string(version) + "\n0 ENDSEC\n");
    if (!blocks.empty()) text += dxfLines("0 SECTION\n2 BLOCKS\n" + std::string(blocks) + "0 ENDSEC\n");
    text += dxfLines("0 SECTION\n2 ENTITIES\n" + std::string(entities) + "0 ENDSEC\n");
    if (!objects.empty()) text += dxfLines("0 SECTION\n2 OBJECTS\n" + std::string(objects) + "0 ENDSEC\n");
    text += dxfLines("0 EOF\n");
    auto result = dxf::readDxf(text);
    EXPECT_TRUE(result.ok()) << result.error;
    if (!result.ok()) throw std::runtime_error(result.error);
    return {std::make_unique<KcDbDatabase>(std::move(result.drawing))};
}

template <class Triple>
std::string describe(const Triple& v) {
    std::ostringstream out;
    out.precision(15);
    out << "(" << v.x << ", " << v.y << ", " << v.z << ")";
    return out.str();
}

inline ::testing::AssertionResult near(const KcGePoint3d& actual, const KcGePoint3d& expected,
                                       double tolerance = 1e-9) {
    if (actual.distanceTo(expected) <= tolerance) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << describe(actual) << " is not " << describe(expected);
}

inline ::testing::AssertionResult boxNear(const geom::Box3d& box, const KcGePoint3d& min, const KcGePoint3d& max,
                                          double tolerance = 1e-9) {
    if (box.isEmpty()) return ::testing::AssertionFailure() << "the box is empty";
    if (box.min().distanceTo(min) <= tolerance && box.max().distanceTo(max) <= tolerance) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "box " << describe(box.min()) << " - " << describe(box.max())
                                         << " is not " << describe(min) << " - " << describe(max);
}

// Saving the drawing and reading the file again gives the same records and tags.
inline ::testing::AssertionResult reloadsUnchanged(const db::Drawing& drawing) {
    const std::string saved = dxf::writeDxf(drawing);
    const auto again = dxf::readDxf(saved);
    if (!again.ok()) return ::testing::AssertionFailure() << "the saved drawing does not load: " << again.error;
    const auto problems = compareDrawings(drawing, *again.drawing);
    if (problems.empty()) return ::testing::AssertionSuccess();
    auto failure = ::testing::AssertionFailure();
    for (const std::string& problem : problems) failure << problem << "\n";
    return failure;
}

}  // namespace korva::test
