// kcedDrawOrderInherit: the order lands in the block's SORTENTSTABLE (created in
// the block record's extension dictionary when missing), survives a DXF save
// and load, and reads the same in an independent DXF reader.
#include <gtest/gtest.h>

#include <cstdio>

#include "TestDrawing.h"
#include "TestFiles.h"
#include "db/ObjectAccess.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"
#include "kcdbobjects.h"
#include "kcdbtables.h"
#include "kced.h"

namespace korva {
namespace {

std::string lineText(const char* handle, const char* owner = "1F", bool paper = false) {
    return std::string("  0\nLINE\n  5\n") + handle + "\n330\n" + owner + "\n100\nAcDbEntity\n" + (paper ? " 67\n1\n" : "") +
           "  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n1.0\n 31\n0.0\n";
}

std::string fourLinesAndOneInPaper() {
    return test::drawingText(lineText("E1") + lineText("E2") + lineText("E3") + lineText("E4") + lineText("E5", "1B", true));
}

KcDbObjectIdArray ids(test::WorkingDrawing& d, std::initializer_list<const wchar_t*> handles) {
    KcDbObjectIdArray out;
    for (const wchar_t* handle : handles) out.append(d.id(handle));
    return out;
}

// The model-space block's draw order as handles, read through its SORTENTSTABLE; empty without one.
std::vector<uint64_t> modelSpaceOrder(test::WorkingDrawing& d) {
    std::vector<uint64_t> order;
    KcDbBlockTableRecord* modelSpace = nullptr;
    if (kcdbOpenObject(modelSpace, d.id(L"1F"), KcDb::kForRead) != Kcad::eOk) return order;
    const KcDbObjectId dictionaryId = modelSpace->extensionDictionary();
    modelSpace->close();
    KcDbDictionary* dictionary = nullptr;
    if (kcdbOpenObject(dictionary, dictionaryId, KcDb::kForRead) != Kcad::eOk) return order;
    KcDbObjectId tableId;
    const bool hasTable = dictionary->getAt(L"ACAD_SORTENTS", tableId) == Kcad::eOk;
    dictionary->close();
    KcDbSortentsTable* table = nullptr;
    if (!hasTable || kcdbOpenObject(table, tableId, KcDb::kForRead) != Kcad::eOk) return order;
    KcDbObjectIdArray full;
    EXPECT_EQ(table->getFullDrawOrder(full), Kcad::eOk);
    EXPECT_EQ(table->blockId(), d.id(L"1F")) << "the table names its block";
    table->close();
    for (const KcDbObjectId& id : full) order.push_back(id.handle());
    return order;
}

// The independent reader's model-space entities in redraw order, as hexadecimal handles.
std::string redrawOrderByIndependentReader(const std::filesystem::path& file) {
    const std::string command = std::string(KORVA_PYTHON3) +
                                " -c \"import sys, ezdxf; doc = ezdxf.readfile(sys.argv[1]); "
                                "print(' '.join(e.dxf.handle for e in doc.modelspace().entities_in_redraw_order()))\" " +
                                file.string() + " 2>&1";
    FILE* pipe = ::popen(command.c_str(), "r");
    std::string output;
    char buffer[256];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe)) output += buffer;
    if (pipe) ::pclose(pipe);
    return output;
}

// "Below" puts each child directly under the parent, keeping the children's order.
TEST(ServicesDrawOrder, ChildrenGoDirectlyBelowTheParent) {
    test::WorkingDrawing d(fourLinesAndOneInPaper());
    ASSERT_TRUE(modelSpaceOrder(d).empty()) << "the template has no draw order yet";
    EXPECT_EQ(kcedDrawOrderInherit(d.id(L"E2"), ids(d, {L"E4", L"E3"}), kDrawOrderBelow), Kcad::eOk);
    EXPECT_EQ(modelSpaceOrder(d), (std::vector<uint64_t>{0xE1, 0xE3, 0xE4, 0xE2}));
}

// Each command value orders as named; later calls reuse the table.
TEST(ServicesDrawOrder, EveryCommandValue) {
    const struct {
        KcGiDrawOrderCmdType command;
        const wchar_t* child;  // the parent is E2
        std::vector<uint64_t> expected;
    } cases[] = {
        {kDrawOrderNone, L"E3", {}},
        {kDrawOrderBottom, L"E3", {0xE3, 0xE1, 0xE2, 0xE4}},
        {kDrawOrderTop, L"E1", {0xE2, 0xE3, 0xE4, 0xE1}},
        {kDrawOrderBelow, L"E3", {0xE1, 0xE3, 0xE2, 0xE4}},
        {kDrawOrderAbove, L"E1", {0xE2, 0xE1, 0xE3, 0xE4}},
    };
    for (const auto& c : cases) {
        test::WorkingDrawing d(fourLinesAndOneInPaper());
        EXPECT_EQ(kcedDrawOrderInherit(d.id(L"E2"), ids(d, {c.child}), c.command), Kcad::eOk) << c.command;
        EXPECT_EQ(modelSpaceOrder(d), c.expected) << c.command;
    }
    test::WorkingDrawing d(fourLinesAndOneInPaper());
    ASSERT_EQ(kcedDrawOrderInherit(d.id(L"E4"), ids(d, {L"E1"}), kDrawOrderAbove), Kcad::eOk);
    ASSERT_EQ(kcedDrawOrderInherit(d.id(L"E2"), ids(d, {L"E4"}), kDrawOrderBelow), Kcad::eOk);
    EXPECT_EQ(modelSpaceOrder(d), (std::vector<uint64_t>{0xE4, 0xE2, 0xE3, 0xE1}));
}

// Once the table exists, the block record need not be opened: a caller may hold it open.
TEST(ServicesDrawOrder, WorksWhileTheBlockRecordIsOpen) {
    test::WorkingDrawing d(fourLinesAndOneInPaper());
    ASSERT_EQ(kcedDrawOrderInherit(d.id(L"E4"), ids(d, {L"E1"}), kDrawOrderAbove), Kcad::eOk);
    KcDbBlockTableRecord* modelSpace = nullptr;
    ASSERT_EQ(kcdbOpenObject(modelSpace, d.id(L"1F"), KcDb::kForWrite), Kcad::eOk);
    EXPECT_EQ(kcedDrawOrderInherit(d.id(L"E3"), ids(d, {L"E2"}), kDrawOrderTop), Kcad::eOk);
    modelSpace->close();
    EXPECT_EQ(modelSpaceOrder(d), (std::vector<uint64_t>{0xE3, 0xE4, 0xE1, 0xE2}));
}

// Children of another block, a null parent or an unknown command change nothing.
TEST(ServicesDrawOrder, BadInputChangesNothing) {
    test::WorkingDrawing d(fourLinesAndOneInPaper());
    const size_t objects = d.drawing().objects.size();
    EXPECT_EQ(kcedDrawOrderInherit(d.id(L"E1"), ids(d, {L"E2", L"E5"}), kDrawOrderBelow), Kcad::eInvalidInput);
    EXPECT_EQ(kcedDrawOrderInherit(d.id(L"E1"), ids(d, {L"E1"}), kDrawOrderBelow), Kcad::eInvalidInput);
    EXPECT_EQ(kcedDrawOrderInherit(KcDbObjectId(), ids(d, {L"E2"}), kDrawOrderBelow), Kcad::eNullObjectId);
    EXPECT_EQ(kcedDrawOrderInherit(d.id(L"E1"), ids(d, {L"E2"}), static_cast<KcGiDrawOrderCmdType>(5)), Kcad::eInvalidInput);
    EXPECT_EQ(d.drawing().objects.size(), objects) << "no dictionary or table was created";
    EXPECT_TRUE(modelSpaceOrder(d).empty());
}

// The order is saved to DXF, read back by the host, and seen the same by an independent reader.
TEST(ServicesDrawOrder, SurvivesDxfSaveAndLoad) {
    test::WorkingDrawing d(fourLinesAndOneInPaper());
    ASSERT_EQ(kcedDrawOrderInherit(d.id(L"E1"), ids(d, {L"E3", L"E4"}), kDrawOrderBelow), Kcad::eOk);
    const std::vector<uint64_t> expected = {0xE3, 0xE4, 0xE1, 0xE2};
    ASSERT_EQ(modelSpaceOrder(d), expected);

    const std::string saved = dxf::writeDxf(d.drawing());
    test::WorkingDrawing reloaded(saved);
    EXPECT_EQ(modelSpaceOrder(reloaded), expected);

    test::TempDir folder;
    test::writeFileBytes(folder.file("order.dxf"), saved);
    EXPECT_EQ(redrawOrderByIndependentReader(folder.file("order.dxf")), "E3 E4 E1 E2\n");
}

}  // namespace
}  // namespace korva
