// A new drawing comes from the built-in template: the records and dictionaries
// an empty drawing of a CAD program has, nothing to repair, and it saves to a
// file other readers open.
#include <gtest/gtest.h>

#include "TestFiles.h"
#include "db/Audit.h"
#include "db/DrawingIo.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

TEST(NewDrawing, HoldsTheTemplateRecordsAndNeedsNoRepair) {
    const auto loaded = dxf::readDxf(db::emptyDrawingTemplate());
    ASSERT_TRUE(loaded.ok()) << loaded.error;
    EXPECT_TRUE(loaded.audit.empty()) << loaded.audit.repairs().front().message;

    KcDbDatabase database;
    db::Drawing& d = database.drawing();
    EXPECT_EQ(d.format.version, "AC1032");
    for (const auto& [table, name] : std::vector<std::pair<const char*, const char*>>{
             {"LAYER", "0"}, {"STYLE", "Standard"}, {"DIMSTYLE", "Standard"}, {"LTYPE", "Continuous"},
             {"LTYPE", "ByLayer"}, {"APPID", "ACAD"}, {"BLOCK_RECORD", "*Model_Space"}, {"BLOCK_RECORD", "*Paper_Space"},
             {"VPORT", "*Active"}}) {
        EXPECT_NE(d.tableRecord(table, name), nullptr) << table << " " << name;
    }
    KcDbDictionary* groups = nullptr;
    ASSERT_EQ(database.getGroupDictionary(groups, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(groups->numEntries(), 0);
    groups->close();

    KcDbDictionary* root = nullptr;
    ASSERT_EQ(database.getNamedObjectsDictionary(root, KcDb::kForRead), Kcad::eOk);
    KcDbObjectId scalesId;
    ASSERT_EQ(root->getAt(L"ACAD_SCALELIST", scalesId), Kcad::eOk);
    root->close();
    KcDbDictionary* scales = nullptr;
    ASSERT_EQ(kcdbOpenObject(scales, scalesId, KcDb::kForRead), Kcad::eOk);
    EXPECT_EQ(scales->numEntries(), 17) << "the metric scales 1:1 ... 100:1";
    KcDbObjectId first;
    ASSERT_EQ(scales->getAt(L"A0", first), Kcad::eOk);
    scales->close();
    KcDbScale* scale = nullptr;
    ASSERT_EQ(kcdbOpenObject(scale, first, KcDb::kForRead), Kcad::eOk);
    wchar_t* name = nullptr;
    scale->getScaleName(name);
    EXPECT_STREQ(name, L"1:1");
    kcutDelString(name);
    scale->close();

    EXPECT_EQ(database.currentSpaceId(), database.modelSpaceId()) << "TILEMODE 1: model space";
    db::AuditReport again;
    db::auditDrawing(d, again);
    EXPECT_TRUE(again.empty());
}

TEST(NewDrawing, SavesToAFileTheIndependentReaderOpens) {
    test::TempDir dir;
    KcDbDatabase database;
    const auto path = dir.file("new.dxf");
    ASSERT_EQ(database.saveAs(path.wstring().c_str()), Kcad::eOk);
    const auto complaints = test::openWithIndependentReader({{path, path}});
    for (const std::string& complaint : complaints) ADD_FAILURE() << complaint;

    KcDbDatabase reread(false, true);
    EXPECT_EQ(reread.readDwgFile(path.wstring().c_str()), Kcad::eOk);
    EXPECT_EQ(reread.readDwgFile(dir.file("missing.dxf").wstring().c_str()), Kcad::eFileNotFound);
}

}  // namespace
}  // namespace korva
