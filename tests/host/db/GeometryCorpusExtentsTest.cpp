// Extents of the curves, polylines, faces and hatches of real drawings against an
// independent reader: ezdxf's bounding boxes (computed from finely flattened
// curves) must match the exact boxes of the database within the flattening error.
// Entities with a thickness or polyline widths are left out: that reader ignores
// thickness and draws widths, the database does the opposite.
#include <cstdio>
#include <map>
#include <sstream>

#include "GeometryTestSupport.h"
#include "TestFiles.h"
#include "db/EntityGeometry.h"

namespace korva {
namespace {

constexpr const char* kBoundingBoxScript = R"(
import sys, ezdxf
from ezdxf import bbox
doc = ezdxf.readfile(sys.argv[1])
kinds = ("LINE", "CIRCLE", "ARC", "ELLIPSE", "LWPOLYLINE", "SPLINE", "POLYLINE", "SOLID", "TRACE", "3DFACE",
         "POINT", "HATCH")

def wide(e):
    # That reader draws polyline widths, which the database's extents ignore.
    if e.dxftype() == "LWPOLYLINE":
        return e.has_width
    if e.dxftype() == "POLYLINE":
        widths = [e.dxf.get("default_start_width", 0), e.dxf.get("default_end_width", 0)]
        for v in e.vertices:
            widths += [v.dxf.get("start_width", 0), v.dxf.get("end_width", 0)]
        return any(widths)
    return False

for e in doc.modelspace():
    if e.dxftype() not in kinds or wide(e):
        continue
    if e.dxf.is_supported("thickness") and e.dxf.get("thickness", 0):
        continue
    box = bbox.extents([e], flatten=0.00001)
    if box.has_data:
        print(e.dxf.handle, *box.extmin, *box.extmax)
)";

struct IndependentBox {
    KcGePoint3d min, max;
};

// Handle -> box, as the independent reader computes them.
std::map<db::Handle, IndependentBox> independentBoxes(const std::filesystem::path& file) {
    std::map<db::Handle, IndependentBox> boxes;
    test::TempDir dir;
    const auto script = dir.file("boxes.py");
    test::writeFileBytes(script, kBoundingBoxScript);
    const std::string command = std::string(KORVA_PYTHON3) + " " + script.string() + " " + file.string();
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return boxes;
    std::string output;
    char buffer[4096];
    while (size_t n = fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    pclose(pipe);
    std::istringstream lines(output);
    std::string handle;
    IndependentBox box;
    while (lines >> handle >> box.min.x >> box.min.y >> box.min.z >> box.max.x >> box.max.y >> box.max.z) {
        boxes[std::stoull(handle, nullptr, 16)] = box;
    }
    return boxes;
}

class CorpusExtents : public ::testing::TestWithParam<const char*> {};

TEST_P(CorpusExtents, MatchTheIndependentReader) {
    const auto path = test::corpusFile(GetParam());
    const auto expected = independentBoxes(path);
    ASSERT_FALSE(expected.empty()) << "the independent reader gave no boxes for " << path;
    auto loaded = dxf::readDxfFile(path.string());
    ASSERT_TRUE(loaded.ok()) << loaded.error;
    for (const auto& [handle, box] : expected) {
        const db::ObjectRecord* entity = loaded.drawing->findByHandle(handle);
        ASSERT_NE(entity, nullptr) << std::hex << handle;
        geom::Box3d measured;
        ASSERT_TRUE(db::entityExtents(*entity, measured)) << test::dumpTags(*entity);
        const double tolerance = 1e-4 * std::max(1.0, box.min.distanceTo(box.max));
        EXPECT_TRUE(test::boxNear(measured, box.min, box.max, tolerance)) << test::dumpTags(*entity);
    }
}

INSTANTIATE_TEST_SUITE_P(Drawings, CorpusExtents,
                         ::testing::Values("ezdxf__3dface.dxf", "ezdxf__POLI-ALL210_12.DXF",
                                           "ezdxf__hatches_1.dxf", "libredwg__sample_2004.dxf",
                                           "ezdxf__columns_R2007.dxf", "ezdxf__text.dxf", "ezdxf__images.dxf",
                                           "ezdxf__wipeout_door.dxf"));

}  // namespace
}  // namespace korva
