// -ATTDEF, -BLOCK and -INSERT as scripts: attribute definitions with their
// modes, a block made of selected objects (which leave model space), references
// whose attributes take the answers (or the defaults), and a DXF file inserted
// as a block with the layers it needs; the saved drawing opens in the
// independent reader.
#include <gtest/gtest.h>

#include "DrawTestSupport.h"
#include "TestDrawing.h"
#include "editor/Coordinates.h"
#include "editor/SystemVariables.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::drawedit::askIndependentReader;
using test::drawedit::blockEntities;
using test::drawedit::blockNamed;
using test::drawedit::expectCleanAudit;
using test::drawedit::expectPointNear;
using test::drawedit::modelSpaceEntities;
using test::drawedit::Opened;

// Two attribute definitions (the second invisible and verified) and a line, made into block ROOM.
constexpr const char* kRoomBlock =
    "-ATTDEF\n\nroom\nRoom number\n101\n0,0\n2.5\n0\n"
    "-ATTDEF\nI\nV\n\nOWNER\nOwner name\nnobody\n0,-5\n2.5\n0\n"
    "LINE\n-1,-1\n5,-1\n\n"
    "-BLOCK\nROOM\n0,0\nALL\n\n";

struct AttributeSeen {
    std::wstring tag;
    std::wstring value;
    KcGePoint3d position;
    double height;
    bool invisible;
};

std::vector<AttributeSeen> attributesOf(KcDbObjectId referenceId) {
    std::vector<AttributeSeen> seen;
    Opened<KcDbBlockReference> reference(referenceId);
    if (!reference) return seen;
    std::unique_ptr<KcDbObjectIterator> iterator(reference->attributeIterator());
    for (iterator->start(); !iterator->done(); iterator->step()) {
        Opened<KcDbAttribute> attribute(iterator->objectId());
        seen.push_back({attribute->tagConst(), attribute->textStringConst(), attribute->position(), attribute->height(),
                        attribute->isInvisible()});
    }
    return seen;
}

TEST(AttdefCommand, ModesTagPromptDefaultAndPlacement) {
    ScriptRun run;
    ASSERT_TRUE(run.run("-ATTDEF\nC\nP\nL\n\nserial\nA-1\n3,4\n2\n90\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u);
    Opened<KcDbAttributeDefinition> attdef(ids[0]);
    ASSERT_TRUE(attdef);
    EXPECT_STREQ(attdef->tagConst(), L"SERIAL") << "tags are upper case";
    EXPECT_STREQ(attdef->promptConst(), L"") << "a constant attribute asks no prompt";
    EXPECT_STREQ(attdef->textStringConst(), L"A-1");
    EXPECT_TRUE(attdef->isConstant());
    EXPECT_TRUE(attdef->isPreset());
    EXPECT_FALSE(attdef->isInvisible());
    EXPECT_FALSE(attdef->lockPositionInBlock()) << "Lock position starts on and was toggled off";
    expectPointNear(attdef->position(), {3, 4, 0}, "start point");
    EXPECT_DOUBLE_EQ(attdef->height(), 2.0);
    EXPECT_TRUE(run.outputContains(L"Enter attribute value: "));
    EXPECT_TRUE(run.outputContains(L"Current attribute modes: Invisible=N Constant=Y Verify=N Preset=Y Lock position=N"));
    expectCleanAudit(run);
}

TEST(BlockCommand, SelectedObjectsMoveIntoTheBlock) {
    ScriptRun run;
    ASSERT_TRUE(run.run(kRoomBlock));
    EXPECT_TRUE(modelSpaceEntities(run).empty()) << "the objects left model space";
    const KcDbObjectId block = blockNamed(run, L"ROOM");
    ASSERT_FALSE(block.isNull());
    const auto members = blockEntities(block);
    ASSERT_EQ(members.size(), 3u);
    Opened<KcDbAttributeDefinition> room(members[0]);
    ASSERT_TRUE(room);
    EXPECT_STREQ(room->tagConst(), L"ROOM");
    EXPECT_STREQ(room->promptConst(), L"Room number");
    Opened<KcDbBlockTableRecord> record(block);
    EXPECT_TRUE(record->hasAttributeDefinitions());
    expectCleanAudit(run);
}

TEST(BlockCommand, ARedefinitionReplacesTheContentsAndItsReferencesFollow) {
    ScriptRun run;
    ASSERT_TRUE(run.run("LINE\n0,0\n1,0\n\n-BLOCK\nB\n0,0\nALL\n\n-INSERT\nB\n10,0\n\n\n\n"
                        "CIRCLE\n0,0\n1\n-BLOCK\nB\nY\n0,0\nL\n\n"));
    const auto members = blockEntities(blockNamed(run, L"B"));
    ASSERT_EQ(members.size(), 1u);
    EXPECT_TRUE(Opened<KcDbCircle>(members[0])) << "the circle replaced the line";
    EXPECT_TRUE(run.outputContains(L"Block \"B\" already exists. Redefine it? [Yes/No] <N>: "));
    EXPECT_EQ(modelSpaceEntities(run).size(), 1u) << "the reference stays";
}

TEST(BlockCommand, ABlockMadeAndInsertedInTheSameUcsPutsTheObjectsBack) {
    ScriptRun run;
    editor::setCurrentUcs(run.document(), {{10, 0, 0}, {0, 1, 0}, {-1, 0, 0}});
    ASSERT_TRUE(run.run("LINE\n0,0\n5,0\n\n-BLOCK\nU\n0,0\nALL\n\n-INSERT\nU\n0,0\n\n\n\n"));
    Opened<KcDbBlockReference> reference(modelSpaceEntities(run).at(0));
    Opened<KcDbLine> line(blockEntities(blockNamed(run, L"U")).at(0));
    ASSERT_TRUE(reference && line);
    expectPointNear(line->endPoint(), {5, 0, 0}, "the definition holds UCS coordinates");
    expectPointNear(reference->blockTransform() * line->startPoint(), {10, 0, 0}, "start");
    expectPointNear(reference->blockTransform() * line->endPoint(), {10, 5, 0}, "end");
}

TEST(InsertCommand, AttributesTakeTheAnswersInOrderAndFollowTheReference) {
    ScriptRun run;
    ASSERT_TRUE(run.run(std::string(kRoomBlock) + "-INSERT\nROOM\n100,50\n2\n\n0\n205\nJane Doe\nJane Doe\n"));
    const auto ids = modelSpaceEntities(run);
    ASSERT_EQ(ids.size(), 1u);
    {
        Opened<KcDbBlockReference> reference(ids[0]);
        ASSERT_TRUE(reference);
        expectPointNear(reference->position(), {100, 50, 0}, "insertion point");
        EXPECT_DOUBLE_EQ(reference->scaleFactors().sy, 2.0) << "Y takes the X scale";
    }
    const auto attributes = attributesOf(ids[0]);
    ASSERT_EQ(attributes.size(), 2u);
    EXPECT_EQ(attributes[0].tag, L"ROOM");
    EXPECT_EQ(attributes[0].value, L"205");
    expectPointNear(attributes[0].position, {100, 50, 0}, "ROOM");
    EXPECT_DOUBLE_EQ(attributes[0].height, 5.0) << "2.5 scaled by 2";
    EXPECT_EQ(attributes[1].tag, L"OWNER");
    EXPECT_EQ(attributes[1].value, L"Jane Doe") << "an answer with a space";
    expectPointNear(attributes[1].position, {100, 40, 0}, "OWNER: 5 below, scaled by 2");
    EXPECT_TRUE(attributes[1].invisible);
    EXPECT_TRUE(run.outputContains(L"Room number <101>: "));
    EXPECT_TRUE(run.outputContains(L"Verify attribute values"));
    expectCleanAudit(run);
}

TEST(InsertCommand, EnterTakesTheDefaultsAndWithoutAttreqNothingIsAsked) {
    for (int attreq : {1, 0}) {
        ScriptRun run;
        editor::SystemVariables::instance().setValue(L"ATTREQ", editor::VarValue::ofInteger(editor::VarType::Short, attreq));
        const std::string answers = attreq == 1 ? "\n\n\n" : "";
        ASSERT_TRUE(run.run(std::string(kRoomBlock) + "-INSERT\nROOM\n0,0\n\n\n\n" + answers));
        const auto attributes = attributesOf(modelSpaceEntities(run).at(0));
        ASSERT_EQ(attributes.size(), 2u) << attreq;
        EXPECT_EQ(attributes[0].value, L"101") << attreq;
        EXPECT_EQ(attributes[1].value, L"nobody") << attreq;
        EXPECT_EQ(run.outputContains(L"Enter attribute values"), attreq == 1);
    }
}

TEST(InsertCommand, ScaleRotationAndPresetsMakeTheBlockTransform) {
    const struct {
        const char* answers;
        KcGeScale3d scale;
        double rotation;
    } cases[] = {
        {"5,5\n2\n3\n90\n", {2, 3, 2}, 3.14159265358979323846 / 2},
        {"5,5\nXYZ\n2\n3\n4\n0\n", {2, 3, 4}, 0},
        {"5,5\n7,9\n0\n", {2, 4, 2}, 0},  // an opposite corner
        {"S\n3\nR\n45\n5,5\n", {3, 3, 3}, 3.14159265358979323846 / 4},
    };
    for (const auto& c : cases) {
        ScriptRun run;
        ASSERT_TRUE(run.run(std::string("CIRCLE\n1,0\n0.5\n-BLOCK\nDOT\n0,0\nALL\n\n-INSERT\nDOT\n") + c.answers));
        Opened<KcDbBlockReference> reference(modelSpaceEntities(run).at(0));
        ASSERT_TRUE(reference) << c.answers;
        expectPointNear(reference->position(), {5, 5, 0}, c.answers);
        EXPECT_TRUE(reference->scaleFactors().isEqualTo(c.scale)) << c.answers;
        EXPECT_NEAR(reference->rotation(), c.rotation, 1e-9) << c.answers;
    }
}

constexpr const char* kWallsLayer =
    "  0\nLAYER\n  5\nA1\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nWALLS\n 70\n0\n"
    " 62\n1\n  6\nContinuous\n";
constexpr const char* kLineAndCircle =
    "  0\nLINE\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\nWALLS\n100\nAcDbLine\n 10\n5.0\n 20\n5.0\n 30\n0.0\n"
    " 11\n15.0\n 21\n5.0\n 31\n0.0\n"
    "  0\nCIRCLE\n  5\nE2\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbCircle\n 10\n5.0\n 20\n5.0\n 30\n0.0\n"
    " 40\n2.0\n";

// A drawing file made from the template, its model space inserted from (5,5).
std::filesystem::path writeDrawingFile(const test::TempDir& dir, const char* name, const char* entities,
                                       const char* layers) {
    std::string text = test::drawingText(entities, layers);
    const std::string origin = "$INSBASE\n 10\n0.0\n 20\n0.0";
    text.replace(text.find(origin), origin.size(), "$INSBASE\n 10\n5.0\n 20\n5.0");
    const auto file = dir.file(name);
    test::writeFileBytes(file, text);
    return file;
}

TEST(InsertCommand, ADxfFileBecomesABlockWithTheLayersItNeeds) {
    test::TempDir dir;
    const auto file = writeDrawingFile(dir, "door.dxf", kLineAndCircle, kWallsLayer);
    ScriptRun run;
    ASSERT_TRUE(run.run("-INSERT\n" + file.string() + "\n100,100\n1\n\n0\n"));
    const KcDbObjectId block = blockNamed(run, L"door");
    ASSERT_FALSE(block.isNull()) << "the block is named after the file";
    EXPECT_EQ(blockEntities(block).size(), 2u);
    EXPECT_NE(run.drawing().tableRecord("LAYER", "WALLS"), nullptr) << "the layer came with the file";
    Opened<KcDbBlockReference> reference(modelSpaceEntities(run).at(0));
    ASSERT_TRUE(reference);
    // The file's (5,5) lands on the insertion point.
    Opened<KcDbLine> line(blockEntities(block).at(0));
    expectPointNear(reference->blockTransform() * line->startPoint(), {100, 100, 0}, "base point");
    expectCleanAudit(run);

    const std::string answer = askIndependentReader(
        run, dir,
        "ref = msp.query('INSERT')[0]\n"
        "print(ref.dxf.name, len(doc.blocks.get(ref.dxf.name)), doc.layers.get('WALLS').color)");
    EXPECT_EQ(answer, "door 2 1\n");
}

TEST(InsertCommand, NameEqualsFileRedefinesTheBlockWhenConfirmed) {
    test::TempDir dir;
    const auto first = writeDrawingFile(dir, "first.dxf", kLineAndCircle, kWallsLayer);
    const auto second = writeDrawingFile(
        dir, "second.dxf",
        "  0\nCIRCLE\n  5\nE2\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbCircle\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
        " 40\n1.0\n",
        "");
    ScriptRun run;
    ASSERT_TRUE(run.run("-INSERT\nDOOR=" + first.string() + "\n0,0\n\n\n\n-INSERT\nDOOR=" + second.string() +
                        "\nY\n10,0\n\n\n\n"));
    const auto members = blockEntities(blockNamed(run, L"DOOR"));
    ASSERT_EQ(members.size(), 1u) << "the second file's contents replaced the first's";
    EXPECT_TRUE(Opened<KcDbCircle>(members[0]));
    EXPECT_EQ(modelSpaceEntities(run).size(), 2u);
    expectCleanAudit(run);
}

TEST(InsertCommand, AnUnknownNameInsertsNothing) {
    ScriptRun run;
    ASSERT_TRUE(run.run("-INSERT\nNOSUCHBLOCK\n"));
    EXPECT_TRUE(modelSpaceEntities(run).empty());
    EXPECT_TRUE(run.outputContains(L"Block \"NOSUCHBLOCK\" not found."));
}

}  // namespace
}  // namespace korva
