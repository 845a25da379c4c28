// Saving in another DXF generation: current drawings as AC1009 and AC1009
// drawings as AC1032 keep their entities (or report what the old format cannot
// hold), and the files open again here and in the independent reader.
#include <gtest/gtest.h>

#include <map>

#include "TestFiles.h"
#include "db/RecordTags.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

namespace korva {
namespace {

// Live entity handles by type: top-level entities and sub-entities of every block.
std::map<db::Handle, std::string> entityHandles(const db::Drawing& d) {
    std::map<db::Handle, std::string> handles;
    for (uint32_t i = 0; i < d.recordCount(); ++i) {
        const db::ObjectRecord* r = d.record(i);
        if (r->isEntity() && !r->erased) handles.emplace(r->handle, std::string(db::typeName(r->type)));
    }
    return handles;
}

struct Conversion {
    const char* file;
    const char* target;
};

class VersionConversion : public ::testing::TestWithParam<Conversion> {};

TEST_P(VersionConversion, EntitiesSurviveOrAreReportedAndTheFileReadsBack) {
    const auto original = dxf::readDxfFile(test::corpusFile(GetParam().file).string());
    ASSERT_TRUE(original.ok()) << original.error;
    dxf::WriteOptions options;
    options.version = GetParam().target;
    dxf::ConversionLosses losses;
    const std::string saved = dxf::writeDxf(*original.drawing, options, &losses);
    const auto reloaded = dxf::readDxf(saved);
    ASSERT_TRUE(reloaded.ok()) << reloaded.error;
    EXPECT_EQ(reloaded.drawing->format.version, GetParam().target);
    for (const auto& repair : reloaded.audit.repairs()) {
        // A converted file may need handles for records the old format lacked, nothing else.
        EXPECT_EQ(repair.code, "missing-handle") << repair.message;
    }
    const auto before = entityHandles(*original.drawing);
    const auto after = entityHandles(*reloaded.drawing);
    size_t missing = 0;
    for (const auto& [handle, type] : before) {
        auto it = after.find(handle);
        if (it == after.end()) {
            ++missing;
        } else if (type != "LWPOLYLINE") {
            EXPECT_EQ(it->second, type) << "handle " << db::formatHandle(handle);
        }
    }
    // What is missing is what the conversion reported, plus the sub-entities of reported entities.
    EXPECT_GE(missing, losses.total());
    if (losses.total() == 0) {
        EXPECT_EQ(missing, 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Corpus, VersionConversion,
    ::testing::Values(Conversion{"acadsharp__sample_AC1009_ascii.dxf", "AC1032"},
                      Conversion{"ezdxf__POLI-ALL210_12.DXF", "AC1015"},
                      Conversion{"ezdxf__Leica_Disto_S910.dxf", "AC1027"},
                      Conversion{"qcad__examples_entities.dxf", "AC1009"},
                      Conversion{"acadsharp__sample_AC1032_ascii.dxf", "AC1009"},
                      Conversion{"dxfparser__polylines.dxf", "AC1032"},
                      Conversion{"ezdxf__text.dxf", "AC1015"}),
    [](const ::testing::TestParamInfo<Conversion>& param) { return "case" + std::to_string(param.index); });

TEST(VersionConversionIndependentReader, ConvertedFilesOpen) {
    test::TempDir dir;
    std::vector<std::pair<std::filesystem::path, std::filesystem::path>> files;
    const Conversion conversions[] = {{"acadsharp__sample_AC1009_ascii.dxf", "AC1032"},
                                      {"qcad__examples_entities.dxf", "AC1009"},
                                      {"acadsharp__sample_AC1032_ascii.dxf", "AC1009"},
                                      {"ezdxf__POLI-ALL210_12.DXF", "AC1015"}};
    for (const Conversion& c : conversions) {
        const auto loaded = dxf::readDxfFile(test::corpusFile(c.file).string());
        ASSERT_TRUE(loaded.ok()) << loaded.error;
        dxf::WriteOptions options;
        options.version = c.target;
        const auto target = dir.file(std::string(c.target) + "-" + c.file);
        ASSERT_EQ(dxf::saveDxfFile(*loaded.drawing, target.string(), options), "");
        files.emplace_back(target, test::corpusFile(c.file));
    }
    for (const std::string& complaint : test::openWithIndependentReader(files)) ADD_FAILURE() << complaint;
}

}  // namespace
}  // namespace korva
