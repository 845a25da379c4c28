// BURST on real drawings of the corpus (copied first): every top-level
// reference with attributes is burst, each attribute must come back as a text
// with its value, layer, style, justification and alignment point, and the
// saved result must open in the independent reader with those texts in it.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <map>

#include "BurstTestSupport.h"
#include "TestFiles.h"
#include "db/Utf8.h"
#include "dxf/DxfWriter.h"

namespace korva::test::blocks {
namespace {

// What an attribute of the original drawing promises its text.
struct ExpectedText {
    std::wstring value;
    std::wstring layer;
    std::wstring style;
    long horizontal = 0;
    long vertical = 0;
    std::vector<double> alignment;
};

// The attributes of every top-level reference, read before the run; the references' handles.
std::vector<ExpectedText> attributesOfReferences(std::vector<std::wstring>& references) {
    std::vector<ExpectedText> expected;
    kcad_name current = {0, 0};
    kcad_name next = {0, 0};
    while (kcdbEntNext(current, next) == RTNORM) {
        EntityList entity(kcdbEntGet(next));
        if (entity.type() == L"INSERT") references.push_back(entity.text(5));
        if (entity.type() == L"ATTRIB") {
            expected.push_back({entity.text(1), entity.text(8), entity.text(7), entity.integer(72).value_or(0),
                                entity.integer(74).value_or(0), entity.point(11).value_or(std::vector<double>{})});
        }
        current[0] = next[0];
        current[1] = next[1];
    }
    return expected;
}

// "value|layer" of every TEXT in model space of the saved file, as the independent reader sees it.
std::vector<std::string> textsSeenByIndependentReader(const std::filesystem::path& saved, const TempDir& dir) {
    const std::filesystem::path script = dir.file("texts.py");
    writeFileBytes(script, "import sys, ezdxf\n"
                           "doc = ezdxf.readfile(sys.argv[1])\n"
                           "for e in doc.modelspace().query('TEXT'):\n"
                           "    print(e.dxf.text + '|' + e.dxf.layer)\n");
    const std::string command = std::string(KORVA_PYTHON3) + " " + script.string() + " " + saved.string() + " 2>&1";
    std::vector<std::string> lines;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return lines;
    std::array<char, 4096> buffer{};
    while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), pipe)) {
        std::string line(buffer.data());
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
        lines.push_back(line);
    }
    ::pclose(pipe);
    return lines;
}

struct CorpusCase {
    const char* name;
    const char* file;
    size_t attributes;  // attributes of top-level references in the file
};
void PrintTo(const CorpusCase& c, std::ostream* out) { *out << c.name; }

class BurstCorpus : public ::testing::TestWithParam<CorpusCase> {};

TEST_P(BurstCorpus, EveryAttributeComesBackAsATextAndTheResultOpensElsewhere) {
    const CorpusCase& c = GetParam();
    TempDir dir;
    const std::filesystem::path copy = dir.file("drawing.dxf");
    std::filesystem::copy_file(corpusFile(c.file), copy);
    ScriptRun run = withExtendModule(ScriptRun::fromFile(copy.string()));
    std::vector<std::wstring> references;
    const std::vector<ExpectedText> expected = attributesOfReferences(references);
    ASSERT_EQ(expected.size(), c.attributes);
    const size_t textsBefore = topLevelEntities(L"TEXT").size();

    // Selection mode "X" reaches references on frozen layers too.
    ASSERT_TRUE(run.run("BURST\n(ssget \"X\" '((0 . \"INSERT\")))\n\n"));
    for (const std::wstring& reference : references) {
        EXPECT_FALSE(EntityList::ofHandle(db::wideToUtf8(reference))) << "reference " << db::wideToUtf8(reference);
    }
    EXPECT_EQ(topLevelEntities(L"TEXT").size(), textsBefore + expected.size());
    for (const ExpectedText& attribute : expected) {
        SCOPED_TRACE(db::wideToUtf8(attribute.value));
        bool found = false;
        for (const EntityList& text : textsReading(attribute.value)) {
            if (text.text(8) != attribute.layer || text.text(7) != attribute.style) continue;
            if (text.integer(72) != attribute.horizontal || text.integer(73) != attribute.vertical) continue;
            const auto alignment = text.point(11);
            if (!alignment || attribute.alignment.size() != 3) continue;
            bool same = true;
            for (size_t i = 0; i < 3; ++i) same = same && std::abs((*alignment)[i] - attribute.alignment[i]) < 1e-9;
            found = found || same;
        }
        EXPECT_TRUE(found) << "no text with the attribute's value, layer, style, justification and alignment";
    }

    const std::filesystem::path saved = dir.file("saved.dxf");
    const std::string error = dxf::saveDxfFile(run.drawing(), saved.string());
    ASSERT_TRUE(error.empty()) << error;
    const std::vector<std::string> complaints = openWithIndependentReader({{saved, corpusFile(c.file)}});
    EXPECT_TRUE(complaints.empty()) << complaints.front();
    const std::vector<std::string> seen = textsSeenByIndependentReader(saved, dir);
    for (const ExpectedText& attribute : expected) {
        const std::string line = db::wideToUtf8(attribute.value) + "|" + db::wideToUtf8(attribute.layer);
        EXPECT_NE(std::find(seen.begin(), seen.end(), line), seen.end()) << line << " not in the saved file";
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, BurstCorpus,
    ::testing::Values(CorpusCase{"JustifiedAttributes", "libredwg__2010_gh209_1.dxf", 3},
                      CorpusCase{"FrozenLayerAndScaledReferences", "qcad__tests_layer_off_freeze_001_10_11_11.dxf", 9},
                      CorpusCase{"ArrayReferenceThatCannotExplode", "ezdxf__multi_insert_with_attribs.dxf", 3}),
    CaseName());

}  // namespace
}  // namespace korva::test::blocks
