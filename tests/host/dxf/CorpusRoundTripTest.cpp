// Every drawing of the shared corpus loads, saves and loads again with the same
// objects, and the saved file opens in an independent reader.
#include <gtest/gtest.h>

#include "DrawingCompare.h"
#include "TestFiles.h"
#include "db/Audit.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

namespace korva {
namespace {

class CorpusRoundTrip : public ::testing::TestWithParam<std::filesystem::path> {};

TEST_P(CorpusRoundTrip, SavedDrawingReloadsWithTheSameObjectsAndTags) {
    const auto first = dxf::readDxfFile(GetParam().string());
    ASSERT_TRUE(first.ok()) << first.error;

    const std::string saved = dxf::writeDxf(*first.drawing);
    const auto second = dxf::readDxf(saved);
    ASSERT_TRUE(second.ok()) << second.error;
    EXPECT_TRUE(second.audit.empty()) << "a saved drawing needs no repair, but: " << second.audit.repairs().front().message;
    EXPECT_EQ(second.drawing->format.version, first.drawing->format.version);
    EXPECT_EQ(second.drawing->format.binary, first.drawing->format.binary);

    const auto problems = test::compareDrawings(*first.drawing, *second.drawing);
    for (const std::string& problem : problems) ADD_FAILURE() << problem;
}

TEST_P(CorpusRoundTrip, AuditOfALoadedDrawingFindsNothingMore) {
    auto loaded = dxf::readDxfFile(GetParam().string());
    ASSERT_TRUE(loaded.ok()) << loaded.error;
    db::AuditReport again;
    db::auditDrawing(*loaded.drawing, again);
    EXPECT_TRUE(again.empty()) << again.repairs().front().message;
}

std::string testName(const ::testing::TestParamInfo<std::filesystem::path>& info) {
    std::string name = info.param.stem().string();
    for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusRoundTrip, ::testing::ValuesIn(test::corpusFiles()), testName);

TEST(CorpusIndependentReader, EverySavedDrawingOpens) {
    test::TempDir dir;
    std::vector<std::pair<std::filesystem::path, std::filesystem::path>> files;
    for (const auto& path : test::corpusFiles()) {
        const auto loaded = dxf::readDxfFile(path.string());
        ASSERT_TRUE(loaded.ok()) << loaded.error;
        const auto target = dir.file(path.filename().string());
        ASSERT_EQ(dxf::saveDxfFile(*loaded.drawing, target.string()), "");
        files.emplace_back(target, path);
    }
    for (const std::string& complaint : test::openWithIndependentReader(files)) ADD_FAILURE() << complaint;
}

}  // namespace
}  // namespace korva
