// -XREF through scripts on copies of corpus drawings and small files: attach
// (block, flags, path, contents, dependent layers and linetypes, the
// reference), the read-only contents, reload and detach, and saved files that
// both readers open.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "TestFiles.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/TextCase.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

std::string attachScript(const std::filesystem::path& file) {
    return "-XREF\nA\n" + file.string() + "\n0,0\n1\n1\n0\n";
}

const db::ObjectRecord* block(test::ScriptRun& run, const std::string& name) {
    return run.drawing().tableRecord("BLOCK_RECORD", name);
}

int64_t blockFlags(const db::ObjectRecord& block) {
    return db::fieldInteger(*block.container->begin, "AcDbBlockBegin", 70);
}

std::vector<const db::ObjectRecord*> liveMembers(const db::ObjectRecord* owner) {
    std::vector<const db::ObjectRecord*> members;
    if (!owner || !owner->container) return members;
    for (const db::ObjectRecord* member : owner->container->members) {
        if (!member->erased) members.push_back(member);
    }
    return members;
}

size_t referencesTo(test::ScriptRun& run, std::string_view name) {
    size_t count = 0;
    for (const db::ObjectRecord* entity : liveMembers(run.drawing().modelSpace())) {
        if (entity->type == db::Type::Insert && db::namesEqual(db::fieldText(*entity, {}, 2), name)) ++count;
    }
    return count;
}

// A small drawing file: lines on the given layer, which the file defines.
std::string linesFile(int lines, const std::string& layer) {
    std::string entities;
    for (int i = 0; i < lines; ++i) {
        entities += "  0\nLINE\n  5\n" + std::to_string(1000 + i) + "\n330\n1F\n100\nAcDbEntity\n  8\n" + layer +
                    "\n100\nAcDbLine\n 10\n0.0\n 20\n" + std::to_string(i) + ".0\n 30\n0.0\n 11\n10.0\n 21\n" +
                    std::to_string(i) + ".0\n 31\n0.0\n";
    }
    const std::string layers =
        "  0\nLAYER\n  5\nA1\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n"
        "  2\n" +
        layer + "\n 70\n0\n 62\n5\n  6\nContinuous\n";
    return test::drawingText(entities, layers);
}

class XrefOfCorpusFile : public testing::Test {
protected:
    void SetUp() override {
        source = dxf::readDxfFile(test::corpusFile("qcad__examples_flange.dxf").string());
        ASSERT_TRUE(source.ok());
        file = dir.file("flange.dxf");
        std::filesystem::copy_file(test::corpusFile("qcad__examples_flange.dxf"), file);
    }
    test::TempDir dir;
    std::filesystem::path file;
    dxf::ReadResult source;
};

// Attach makes an external, resolved block holding the file's model space and inserts it once.
TEST_F(XrefOfCorpusFile, AttachLoadsTheModelSpaceIntoAnXrefBlock) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run(attachScript(file))) << run.outputUtf8();
    const db::ObjectRecord* xref = block(run, "flange");
    ASSERT_TRUE(xref);
    EXPECT_EQ(blockFlags(*xref), 4 + 32);
    EXPECT_EQ(db::fieldText(*xref->container->begin, "AcDbBlockBegin", 1), file.string());
    size_t expected = 0;
    for (const db::ObjectRecord* entity : liveMembers(source.drawing->modelSpace())) {
        ASSERT_NE(entity->type, db::Type::Image);  // the file has nothing an xref leaves behind
        ++expected;
    }
    EXPECT_EQ(liveMembers(xref).size(), expected);
    EXPECT_EQ(referencesTo(run, "flange"), 1u);
    for (const db::ObjectRecord* entity : liveMembers(xref)) {
        const std::string_view layer = db::fieldText(*entity, {}, 8, "0");
        EXPECT_TRUE(layer == "0" || layer.substr(0, 7) == "flange|") << layer;
    }
}

// Every layer of the file but "0" becomes "flange|layer", dependent and resolved, with its colour.
TEST_F(XrefOfCorpusFile, LayersAndLinetypesBecomeDependentRecords) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run(attachScript(file)));
    size_t dependent = 0;
    for (const db::ObjectRecord* layer : source.drawing->table("LAYER")->records) {
        const std::string name(db::recordName(*layer));
        if (name == "0") {
            EXPECT_FALSE(run.drawing().tableRecord("LAYER", "flange|0"));
            continue;
        }
        const db::ObjectRecord* copy = run.drawing().tableRecord("LAYER", "flange|" + name);
        ASSERT_TRUE(copy) << name;
        EXPECT_EQ(db::fieldInteger(*copy, {}, 70) & 48, 48) << name;
        EXPECT_EQ(db::fieldInteger(*copy, {}, 62), db::fieldInteger(*layer, {}, 62)) << name;
        ++dependent;
    }
    EXPECT_GT(dependent, 5u);
    for (const db::ObjectRecord* linetype : source.drawing->table("LTYPE")->records) {
        const std::string name(db::recordName(*linetype));
        const bool shared =
            db::namesEqual(name, "ByLayer") || db::namesEqual(name, "ByBlock") || db::namesEqual(name, "Continuous");
        EXPECT_EQ(run.drawing().tableRecord("LTYPE", "flange|" + name) != nullptr, !shared) << name;
    }
}

// The xref's entities can be read but not opened for write.
TEST_F(XrefOfCorpusFile, ContentsAreReadOnly) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run(attachScript(file)));
    const auto members = liveMembers(block(run, "flange"));
    ASSERT_FALSE(members.empty());
    const KcDbObjectId id = db::ObjectAccess::id(members.front());
    KcDbEntity* entity = nullptr;
    EXPECT_EQ(kcdbOpenObject(entity, id, KcDb::kForWrite), Kcad::eNotApplicable);
    ASSERT_EQ(kcdbOpenObject(entity, id, KcDb::kForRead), Kcad::eOk);
    entity->close();
    const KcDbObjectId reference = db::ObjectAccess::id(liveMembers(run.drawing().modelSpace()).back());
    ASSERT_EQ(kcdbOpenObject(entity, reference, KcDb::kForWrite), Kcad::eOk);  // the reference itself stays editable
    entity->close();
}

// Detach removes the references, the block and every dependent record.
TEST_F(XrefOfCorpusFile, DetachRemovesEverything) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run(attachScript(file) + attachScript(file)));
    EXPECT_EQ(referencesTo(run, "flange"), 2u);
    ASSERT_TRUE(run.run("-XREF\nD\nFLANGE\n"));
    EXPECT_FALSE(block(run, "flange"));
    EXPECT_EQ(referencesTo(run, "flange"), 0u);
    for (const db::SymbolTable& table : run.drawing().tables) {
        for (const db::ObjectRecord* record : table.records) {
            if (record->erased) continue;
            EXPECT_NE(db::recordName(*record).substr(0, 7), "flange|") << table.name;
        }
    }
}

// Saved with an xref, the drawing opens in both readers, which find the block and its flags.
TEST_F(XrefOfCorpusFile, SavedDrawingOpensInBothReaders) {
    test::ScriptRun run;
    ASSERT_TRUE(run.run(attachScript(file)));
    const auto saved = dir.file("host.dxf");
    ASSERT_EQ(dxf::saveDxfFile(run.drawing(), saved.string()), "");
    auto reread = dxf::readDxfFile(saved.string());
    ASSERT_TRUE(reread.ok()) << reread.error;
    const db::ObjectRecord* xref = reread.drawing->tableRecord("BLOCK_RECORD", "flange");
    ASSERT_TRUE(xref);
    EXPECT_EQ(db::fieldInteger(*xref->container->begin, "AcDbBlockBegin", 70), 36);
    EXPECT_EQ(liveMembers(xref).size(), liveMembers(block(run, "flange")).size());
    EXPECT_TRUE(test::openWithIndependentReader({{saved, saved}}).empty());
}

// Reload reads the changed file again; dependent layers keep the states the host gave them.
TEST(XrefCommand, ReloadReadsTheFileAgainAndKeepsLayerStates) {
    test::TempDir dir;
    const auto file = dir.file("parts.dxf");
    test::writeFileBytes(file, linesFile(1, "EDGES"));
    test::ScriptRun run;
    ASSERT_TRUE(run.run(attachScript(file) + "-LAYER\nOFF\nparts|EDGES\n\n"));
    EXPECT_EQ(liveMembers(block(run, "parts")).size(), 1u);
    test::writeFileBytes(file, linesFile(3, "EDGES"));
    ASSERT_TRUE(run.run("-XREF\nR\nparts\n"));
    EXPECT_EQ(liveMembers(block(run, "parts")).size(), 3u);
    EXPECT_LT(db::fieldInteger(*run.drawing().tableRecord("LAYER", "parts|EDGES"), {}, 62), 0);
    EXPECT_EQ(referencesTo(run, "parts"), 1u);
}

// The live anonymous blocks of the drawing that came with an xref (dependent, flag 16).
size_t anonymousDependentBlocks(test::ScriptRun& run) {
    size_t count = 0;
    for (const db::ObjectRecord* record : run.drawing().table("BLOCK_RECORD")->records) {
        const std::string_view name = db::recordName(*record);
        if (record->erased || name.empty() || name.front() != '*' || !record->container) continue;
        if (db::fieldInteger(*record->container->begin, "AcDbBlockBegin", 70) & 16) ++count;
    }
    return count;
}

// Dimension blocks (anonymous) come along under new names, and a reload replaces them instead of piling them up.
TEST(XrefCommand, AnonymousBlocksAreReplacedOnReload) {
    test::TempDir dir;
    const auto file = dir.file("dims.dxf");
    std::filesystem::copy_file(test::corpusFile("ezdxf__dimension_in_block.dxf"), file);
    test::ScriptRun run;
    ASSERT_TRUE(run.run(attachScript(file)));
    EXPECT_EQ(anonymousDependentBlocks(run), 2u);  // *D1 of model space, *D3 inside BLK_WITH_DIM
    for (const db::ObjectRecord* entity : liveMembers(block(run, "dims"))) {
        if (entity->type != db::Type::Dimension) continue;
        const db::ObjectRecord* geometry = block(run, std::string(db::fieldText(*entity, {}, 2)));
        ASSERT_TRUE(geometry);
        EXPECT_FALSE(liveMembers(geometry).empty());
    }
    ASSERT_TRUE(run.run("-XREF\nR\ndims\n-XREF\nR\ndims\n"));
    EXPECT_EQ(anonymousDependentBlocks(run), 2u);
    ASSERT_TRUE(run.run("-XREF\nD\ndims\n"));
    EXPECT_EQ(anonymousDependentBlocks(run), 0u);
}

// A file that cannot be read leaves no xref behind, and the script goes on.
TEST(XrefCommand, MissingFileIsReported) {
    test::TempDir dir;
    test::ScriptRun run;
    // No insertion prompts follow a failed load: the next line is a command again.
    ASSERT_TRUE(run.run("-XREF\nA\n" + dir.file("absent.dxf").string() + "\nORTHO\nON\n")) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"could not be read"));
    EXPECT_FALSE(block(run, "absent"));
    EXPECT_EQ(run.drawing().header.getInteger("$ORTHOMODE").value_or(0), 1);
}

struct GenerationCase {
    const char* host;  // corpus file, or "" for a new drawing
    const char* xref;  // corpus file
};

class XrefAcrossGenerations : public testing::TestWithParam<GenerationCase> {};

// Files of other DXF generations are converted to the host's: the saved drawing opens in both readers.
TEST_P(XrefAcrossGenerations, SavedDrawingOpens) {
    const GenerationCase& c = GetParam();
    test::TempDir dir;
    const auto file = dir.file("part.dxf");
    std::filesystem::copy_file(test::corpusFile(c.xref), file);
    test::ScriptRun run = *c.host ? test::ScriptRun::fromFile(test::corpusFile(c.host).string()) : test::ScriptRun();
    ASSERT_TRUE(run.run(attachScript(file)));
    ASSERT_TRUE(block(run, "part"));
    EXPECT_FALSE(liveMembers(block(run, "part")).empty());
    const auto saved = dir.file("host.dxf");
    ASSERT_EQ(dxf::saveDxfFile(run.drawing(), saved.string()), "");
    auto reread = dxf::readDxfFile(saved.string());
    ASSERT_TRUE(reread.ok()) << reread.error;
    EXPECT_EQ(reread.drawing->format.version, run.drawing().format.version);
    EXPECT_TRUE(reread.drawing->tableRecord("BLOCK_RECORD", "part"));
    EXPECT_TRUE(test::openWithIndependentReader({{saved, saved}}).empty()) << c.host << " + " << c.xref;
}

INSTANTIATE_TEST_SUITE_P(
    Generations, XrefAcrossGenerations,
    testing::Values(GenerationCase{"", "acadsharp__sample_AC1009_ascii.dxf"},
                    GenerationCase{"acadsharp__sample_AC1009_ascii.dxf", "qcad__examples_flange.dxf"},
                    GenerationCase{"acadsharp__sample_AC1009_ascii.dxf", "openscad__example009.dxf"},
                    GenerationCase{"ezdxf__bin_dxf_r14.dxf", "acadsharp__sample_AC1009_ascii.dxf"}));

// ? lists the xrefs with their paths.
TEST(XrefCommand, ListShowsNamesAndPaths) {
    test::TempDir dir;
    const auto file = dir.file("parts.dxf");
    test::writeFileBytes(file, linesFile(1, "EDGES"));
    test::ScriptRun run;
    ASSERT_TRUE(run.run(attachScript(file) + "-XREF\n?\n\n"));
    EXPECT_TRUE(run.outputContains(L"Total Xref(s): 1"));
    EXPECT_TRUE(run.outputContains(std::wstring(file.wstring())));
}

}  // namespace
}  // namespace korva
