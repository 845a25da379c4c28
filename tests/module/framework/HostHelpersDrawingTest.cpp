// The framework helpers that work on a drawing, against the real host:
// selection-set merging, ids, locked-layer filtering, erasing and collecting
// new entities; UCS and object-system conversions and their matrices; new
// entities in model or paper space, their extents; anonymous blocks and their
// references; and command-line error prompts from the resource library.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "FrameworkTestSupport.h"
#include "framework/HostUtils.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace korva {
namespace {

constexpr double kTolerance = 1e-9;

void expectPoint(const double* actual, const KcGePoint3d& expected) {
    EXPECT_NEAR(actual[0], expected.x, kTolerance);
    EXPECT_NEAR(actual[1], expected.y, kTolerance);
    EXPECT_NEAR(actual[2], expected.z, kTolerance);
}

void expectPoint(const KcGePoint3d& actual, const KcGePoint3d& expected) {
    const double values[3] = {actual.x, actual.y, actual.z};
    expectPoint(values, expected);
}

class HostHelpersDrawing : public ::testing::Test {
protected:
    // A LINE from (x, 0) to (x + 1, 2) on a layer; its entity name.
    std::array<int64_t, 2> line(double x, const wchar_t* layer = L"0") {
        const double from[3] = {x, 0.0, 0.0};
        const double to[3] = {x + 1.0, 2.0, 0.0};
        ResbufChain list(kcutBuildList(RTDXF0, L"LINE", 8, layer, 10, from, 11, to, 0));
        EXPECT_EQ(kcdbEntMake(list.get()), RTNORM);
        std::array<int64_t, 2> name{};
        EXPECT_EQ(kcdbEntLast(name.data()), RTNORM);
        return name;
    }
    static Kcad::Int32 length(const kcad_name set) {
        Kcad::Int32 count = -1;
        return kcedSSLength(set, &count) == RTNORM ? count : -1;
    }
    static KcDbObjectId idOf(const int64_t* name) {
        KcDbObjectId id;
        EXPECT_EQ(kcdbGetObjectId(id, name), Kcad::eOk);
        return id;
    }

    test::ScriptRun run_;
};

TEST_F(HostHelpersDrawing, SelectionHelpersMergeFilterAndCollect) {
    ResbufChain layer(kcutBuildList(RTDXF0, L"LAYER", 2, L"Locked", 70, 4, 62, 1, 6, L"Continuous", 0));
    ASSERT_EQ(kcdbEntMake(layer.get()), RTNORM);
    const auto first = line(0);
    const auto locked = line(1, L"Locked");
    const auto third = line(2);
    SelectionSetGuard all;
    ASSERT_EQ(kcedSSGet(L"X", nullptr, nullptr, nullptr, all.name()), RTNORM);
    ASSERT_EQ(length(all.name()), 3);

    KcDbObjectIdArray ids;
    EXPECT_EQ(GetSSObjIds(ids, all.name()), 3);
    ASSERT_EQ(ids.length(), 3);
    EXPECT_EQ(ids[0], idOf(first.data()));
    EXPECT_EQ(ids[1], idOf(locked.data()));
    EXPECT_EQ(ids[2], idOf(third.data()));

    filterEntitisInLockedLayer(all.name());
    EXPECT_EQ(length(all.name()), 2);
    EXPECT_EQ(kcedSSMemb(locked.data(), all.name()), RTERROR);
    EXPECT_EQ(kcedSSMemb(third.data(), all.name()), RTNORM);

    SelectionSetGuard copy;
    ASSERT_EQ(kcedSSAdd(nullptr, nullptr, copy.name()), RTNORM);
    EXPECT_EQ(ssaddss(all.name(), copy.name()), RTNORM);
    EXPECT_EQ(length(copy.name()), 2);

    SelectionSetGuard highlighted;
    const kcad_name none = {0, 0};
    EXPECT_EQ(kcedSSAddEx(all.name(), none, highlighted.name()), RTNORM);
    EXPECT_EQ(length(highlighted.name()), 2) << "a null set becomes a new one";
    EXPECT_EQ(run_.document().highlighted().size(), 2u);

    kcad_name last = {0, 0};
    ASSERT_EQ(kcdbEntLast(last), RTNORM);
    const auto fourth = line(3);
    const auto fifth = line(4);
    SelectionSetGuard created;
    EXPECT_EQ(GetLastSel(last, created.name()), RTNORM);
    ASSERT_EQ(length(created.name()), 2) << "only what was made after the mark";
    EXPECT_EQ(kcedSSMemb(fourth.data(), created.name()), RTNORM);
    EXPECT_EQ(kcedSSMemb(fifth.data(), created.name()), RTNORM);
    SelectionSetGuard everything;
    EXPECT_EQ(GetLastSel(nullptr, everything.name()), RTNORM);
    EXPECT_EQ(length(everything.name()), 5);

    EXPECT_EQ(EmptyEntFromSS(created.name()), RTNORM);
    EXPECT_EQ(kcdbEntGet(fourth.data()), nullptr) << "erased";
    EXPECT_EQ(kcdbEntGet(fifth.data()), nullptr);
    ResbufChain stillThere(kcdbEntGet(third.data()));
    EXPECT_TRUE(stillThere);

    kcad_name freed = {created.name()[0], created.name()[1]};
    EXPECT_EQ(created.free(), RTNORM);
    EXPECT_EQ(length(freed), -1) << "the guard freed the set";
}

TEST_F(HostHelpersDrawing, PointsConvertBetweenTheUcsTheWorldAndObjectSystems) {
    ASSERT_TRUE(run_.run("_.UCS\n_O\n10,20,0\n"));
    const kcad_point inUcs = {1.0, 2.0, 0.0};
    kcad_point result = {0, 0, 0};
    ASSERT_TRUE(uc2wc(inUcs, result));
    expectPoint(result, KcGePoint3d(11, 22, 0));
    ASSERT_TRUE(uc2wc(inUcs, result, true));
    {
        SCOPED_TRACE("a displacement ignores the origin");
        expectPoint(result, KcGePoint3d(1, 2, 0));
    }
    const kcad_point inWorld = {11.0, 22.0, 0.0};
    ASSERT_TRUE(wc2uc(inWorld, result));
    expectPoint(result, KcGePoint3d(1, 2, 0));

    // The object system of extrusion (0, 0, -1) has its x axis along world -x.
    const kcad_point down = {0.0, 0.0, -1.0};
    const kcad_point inObject = {1.0, 0.0, 0.0};
    ASSERT_TRUE(ec2uc(inObject, down, result));
    expectPoint(result, KcGePoint3d(-11, -20, 0));
    const kcad_point back = {-11.0, -20.0, 0.0};
    ASSERT_TRUE(uc2ec(back, down, result));
    expectPoint(result, KcGePoint3d(1, 0, 0));
    KcGePoint3d objectPoint;
    ASSERT_TRUE(uc2ec(KcGePoint3d(-11, -20, 0), KcGeVector3d(0, 0, -1), objectPoint));
    expectPoint(objectPoint, KcGePoint3d(1, 0, 0));
}

TEST_F(HostHelpersDrawing, UcsMatricesFollowTheCurrentUcs) {
    ASSERT_TRUE(run_.run("_.UCS\n_O\n10,20,0\n_.UCS\n_Z\n90\n"));
    KcGeMatrix3d toWorld;
    KcGeMatrix3d toUcs;
    uc2wcMatrix(toWorld);
    wc2ucMatrix(toUcs);
    {
        SCOPED_TRACE("UCS x is world y");
        expectPoint(toWorld * KcGePoint3d(1, 0, 0), KcGePoint3d(10, 21, 0));
    }
    expectPoint(toUcs * KcGePoint3d(10, 21, 0), KcGePoint3d(1, 0, 0));

    KcGeMatrix3d move = KcGeMatrix3d::translation(KcGeVector3d(1, 0, 0));
    TransDependOnUcs(move);
    {
        SCOPED_TRACE("a move along UCS x moves along world y");
        expectPoint(move * KcGePoint3d(0, 0, 0), KcGePoint3d(0, 1, 0));
    }

    KcGeMatrix3d toBlock;
    KcDbDatabase* database = kcdbHostApplicationServices()->workingDatabase();
    getUcsToWcsOriginMatrix(toBlock, KcGePoint3d(5, 5, 0), database);
    expectPoint(toBlock * KcGePoint3d(5, 5, 0), KcGePoint3d(0, 0, 0));
    {
        SCOPED_TRACE("UCS x becomes the block's x");
        expectPoint(toBlock * KcGePoint3d(5, 6, 0), KcGePoint3d(1, 0, 0));
    }
    getUcsToWcsOriginMatrix(toBlock, KcGePoint3d(5, 5, 0), nullptr);
    EXPECT_TRUE(toBlock.isIdentity());
}

TEST_F(HostHelpersDrawing, NewEntitiesGoToTheAskedSpaceAndReportTheirExtents) {
    KcDbDatabase* database = kcdbHostApplicationServices()->workingDatabase();
    for (const bool modelSpace : {true, false}) {
        auto* entity = new KcDbLine(KcGePoint3d(1, 2, 0), KcGePoint3d(4, -1, 3));
        KcDbObjectId id;
        ASSERT_EQ(addEntityToDb(id, entity, modelSpace), Kcad::eOk);
        EXPECT_EQ(entity->blockId(), modelSpace ? database->modelSpaceId() : database->paperSpaceId());
        KcDbExtents open;
        EXPECT_EQ(getEntityExtents(entity, open), Kcad::eOk);
        entity->close();
        KcDbExtents extents;
        ASSERT_EQ(getEntityExtents(id, extents), Kcad::eOk);
        expectPoint(extents.minPoint(), KcGePoint3d(1, -1, 0));
        expectPoint(extents.maxPoint(), KcGePoint3d(4, 2, 3));
    }
    KcDbExtents none;
    EXPECT_NE(getEntityExtents(KcDbObjectId(), none), Kcad::eOk);
    KcDbObjectId unused;
    EXPECT_EQ(addEntityToCurrentSpace(unused, nullptr), Kcad::eNullEntityPointer);
}

TEST_F(HostHelpersDrawing, AnonymousBlocksTakeTheObjectsRelativeToTheBasePoint) {
    const auto first = line(10);
    const auto second = line(12);
    KcDbObjectIdArray ids;
    ids.append(idOf(first.data()));
    ids.append(idOf(second.data()));
    KcDbObjectId blockId;
    ASSERT_EQ(makeAnonymousBlock(blockId, ids, KcGePoint3d(10, 0, 0)), Kcad::eOk);
    KcDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(kcdbOpenObject(block, blockId, KcDb::kForRead), Kcad::eOk);
    EXPECT_TRUE(block->isAnonymous());
    const wchar_t* name = nullptr;
    ASSERT_EQ(block->getName(name), Kcad::eOk);
    const std::wstring blockName = name;
    EXPECT_EQ(blockName.rfind(L"*U", 0), 0u) << db::wideToUtf8(blockName);
    std::vector<KcGePoint3d> starts;
    KcDbBlockTableRecordIterator* it = nullptr;
    ASSERT_EQ(block->newIterator(it), Kcad::eOk);
    for (; !it->done(); it->step()) {
        KcDbEntity* entity = nullptr;
        ASSERT_EQ(it->getEntity(entity, KcDb::kForRead), Kcad::eOk);
        if (auto* copy = KcDbLine::cast(entity)) starts.push_back(copy->startPoint());
        entity->close();
    }
    delete it;
    block->close();
    ASSERT_EQ(starts.size(), 2u);
    expectPoint(starts[0], KcGePoint3d(0, 0, 0));
    expectPoint(starts[1], KcGePoint3d(2, 0, 0));

    ASSERT_EQ(makeBlockReference(blockId, KcGePoint3d(5, 6, 0), 0.5), Kcad::eOk);
    kcad_name insert = {0, 0};
    ASSERT_EQ(kcdbEntLast(insert), RTNORM);
    ResbufChain list(kcdbEntGet(insert));
    EXPECT_STREQ(getrb_string(list.get(), 0), L"INSERT");
    EXPECT_EQ(getrb_string(list.get(), 2), blockName);
    expectPoint(getrb_point(list.get(), 10), KcGePoint3d(5, 6, 0));
    EXPECT_NEAR(getrb_real(list.get(), 50), 0.5, kTolerance);
    EXPECT_EQ(findResbufNode(list.get(), 67), nullptr) << "model space (no 67 group)";
}

TEST_F(HostHelpersDrawing, BlockReferencesGoToPaperSpaceInALayout) {
    const auto source = line(0);
    KcDbObjectIdArray ids;
    ids.append(idOf(source.data()));
    KcDbObjectId blockId;
    ASSERT_EQ(makeAnonymousBlock(blockId, ids, KcGePoint3d(0, 0, 0)), Kcad::eOk);
    ASSERT_TRUE(run_.run("TILEMODE\n0\n"));
    ASSERT_EQ(makeBlockReference(blockId, KcGePoint3d(1, 1, 0), 0.0), Kcad::eOk);
    kcad_name insert = {0, 0};
    ASSERT_EQ(kcdbEntLast(insert), RTNORM);
    ResbufChain list(kcdbEntGet(insert));
    int space = 0;
    EXPECT_EQ(GetBufInt(list.get(), 67, space), RTNORM);
    EXPECT_EQ(space, 1);
}

TEST_F(HostHelpersDrawing, ErrorPromptsPrintResourceTextsOnTheCommandLine) {
    runtime::LoadedModule* module = test::extendModule();
    ASSERT_NE(module, nullptr);
    const HINSTANCE library = *static_cast<HINSTANCE*>(module->symbol("hLibModule"));
    ASSERT_NE(library, nullptr);
    CKcModuleResourceOverride resources(library);
    const size_t before = run_.output().size();
    kcedErrorPrompt(6650, 0);
    std::wstring notice = test::resourceText(6650);
    notice.erase(0, notice.find_first_not_of(L'\n'));
    EXPECT_NE(run_.output().find(notice + L"\n", before), std::wstring::npos) << "printed as \"\\n%s\\n\"";
    const size_t afterPrint = run_.output().size();
    kcedErrorPrompt(6650, 7);
    kcedErrorPrompt(1, 0);  // missing: an empty line only
    EXPECT_EQ(run_.output().find(notice, afterPrint), std::wstring::npos);
    EXPECT_EQ(StringFromID(6650).str(), test::resourceText(6650));
}

TEST_F(HostHelpersDrawing, ZoomShowsTheWindowAroundTheGivenBoxQuietly) {
    resbuf echo{};
    echo.restype = RTSHORT;
    echo.resval.rint = 1;
    ASSERT_EQ(kcedSetVar(L"CMDECHO", &echo), RTNORM);
    const size_t before = run_.output().size();
    EXPECT_EQ(krxZoom(KcGePoint3d(100, 200, 0), KcGePoint3d(140, 230, 5)), RTNORM);
    resbuf centre{};
    ASSERT_EQ(kcedGetVar(L"VIEWCTR", &centre), RTNORM);
    expectPoint(centre.resval.rpoint, KcGePoint3d(120, 215, 0));
    resbuf after{};
    ASSERT_EQ(kcedGetVar(L"CMDECHO", &after), RTNORM);
    EXPECT_EQ(after.resval.rint, 1) << "CMDECHO restored";
    EXPECT_EQ(run_.output().find(L"ZOOM", before), std::wstring::npos) << "the zoom is not echoed";
}

TEST_F(HostHelpersDrawing, CaseConversionsWorkInPlace) {
    CString text(L"Mixed Text 12");
    EXPECT_TRUE(KvErrorEat::strMakeUpper(text));
    EXPECT_EQ(text, L"MIXED TEXT 12");
    std::wstring wide = L"ABC d";
    EXPECT_TRUE(KvErrorEat::strMakeLower(wide));
    EXPECT_EQ(wide, L"abc d");
    EXPECT_EQ(formatWide(L"%s=%d", L"n", 4), L"n=4") << "\"%s\" takes a wide string, as in host formatting";
}

}  // namespace
}  // namespace korva
