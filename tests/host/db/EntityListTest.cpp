// Entity lists of the C-level API: complete lists in DXF order with radians,
// partial updates with kcdbEntMod, validated creation with kcdbEntMake, walks
// with kcdbEntNext and table look-ups.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "DrawingCompare.h"
#include "TestDrawing.h"
#include "db/EntityNames.h"
#include "db/ObjectRecord.h"
#include "kcdbfuncs.h"

namespace korva {
namespace {

using test::WorkingDrawing;

std::vector<int> codesOf(const resbuf* list) {
    std::vector<int> codes;
    for (const resbuf* rb = list; rb; rb = rb->rbnext) codes.push_back(rb->restype);
    return codes;
}

const resbuf* item(const resbuf* list, int code, int occurrence = 0) {
    for (const resbuf* rb = list; rb; rb = rb->rbnext) {
        if (rb->restype == code && occurrence-- == 0) return rb;
    }
    return nullptr;
}

struct ListGuard {
    resbuf* list;
    explicit ListGuard(resbuf* l) : list(l) {}
    ~ListGuard() { kcutRelRb(list); }
};

constexpr const char* kModernText =
    "  0\nTEXT\n  5\nA0\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 40\n2.5\n"
    "  1\nHello\n 50\n30.0\n100\nAcDbText\n";

TEST(EntityList, TextListIsCompleteInDxfOrderWithRadians) {
    WorkingDrawing d = WorkingDrawing::withEntities(kModernText);
    kcad_name ent;
    d.name(L"A0", ent);
    ListGuard list(kcdbEntGet(ent));
    ASSERT_NE(list.list, nullptr);
    const std::vector<int> expected{-1, 0, 330, 5, 100, 410, 8, 100, 10, 40, 1, 50, 41, 51, 7, 71, 72, 11, 210, 100, 73};
    EXPECT_EQ(codesOf(list.list), expected);
    EXPECT_NEAR(item(list.list, 50)->resval.rreal, std::numbers::pi / 6, 1e-12);
    EXPECT_STREQ(item(list.list, 410)->resval.rstring, L"Model");
    EXPECT_STREQ(item(list.list, 7)->resval.rstring, L"Standard");  // a default the file left out
    EXPECT_STREQ(item(list.list, 5)->resval.rstring, L"A0");
    EXPECT_EQ(item(list.list, 210)->resval.rpoint[2], 1.0);
}

TEST(EntityList, RecordsWithoutSubclassMarkersListLikeCurrentOnes) {
    // An R12-style TEXT (no markers) in a current drawing: the list carries the markers.
    WorkingDrawing d = WorkingDrawing::withEntities(
        "  0\nTEXT\n  5\nA1\n  8\n0\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 40\n2.5\n  1\nOld\n 72\n1\n 11\n3.0\n 21\n2.0\n 31\n0.0\n 73\n2\n");
    kcad_name ent;
    d.name(L"A1", ent);
    ListGuard list(kcdbEntGet(ent));
    const std::vector<int> expected{-1, 0, 330, 5, 100, 410, 8, 100, 10, 40, 1, 50, 41, 51, 7, 71, 72, 11, 210, 100, 73};
    EXPECT_EQ(codesOf(list.list), expected);
    EXPECT_EQ(item(list.list, 73)->resval.rint, 2);
}

TEST(EntityList, CommonPropertiesAppearOnlyWhenSet) {
    WorkingDrawing d = WorkingDrawing::withEntities(
        "  0\nLINE\n  5\nB0\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n1.0\n 31\n0.0\n"
        "  0\nLINE\n  5\nB1\n100\nAcDbEntity\n  8\n0\n  6\nContinuous\n 62\n1\n370\n50\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n1.0\n 31\n0.0\n");
    kcad_name plain, styled;
    d.name(L"B0", plain);
    d.name(L"B1", styled);
    ListGuard a(kcdbEntGet(plain));
    ListGuard b(kcdbEntGet(styled));
    EXPECT_EQ(codesOf(a.list), (std::vector<int>{-1, 0, 330, 5, 100, 410, 8, 100, 10, 11, 210}));
    EXPECT_EQ(codesOf(b.list), (std::vector<int>{-1, 0, 330, 5, 100, 410, 8, 6, 62, 370, 100, 10, 11, 210}));
}

TEST(EntityList, EntModReplacesGroupsInPlaceAndInsertsNewOnes) {
    WorkingDrawing d = WorkingDrawing::withEntities(kModernText);
    kcad_name ent;
    d.name(L"A0", ent);
    const db::ObjectRecord* record = db::recordOf(ent);
    ListGuard list(kcdbEntGet(ent));
    const_cast<resbuf*>(item(list.list, 40))->resval.rreal = 5.0;
    // Append a colour at the end of the list, as scripts do.
    resbuf* last = list.list;
    while (last->rbnext) last = last->rbnext;
    last->rbnext = kcutBuildList(62, 1, RTNONE);
    ASSERT_EQ(kcdbEntMod(list.list), RTNORM);
    // Only the changed height and the new colour: defaults the list carried are not written out.
    EXPECT_EQ(test::dumpTags(*record),
              "TEXT 5=#A0 330=#1F 100=\"AcDbEntity\" 8=\"0\" 62=1 100=\"AcDbText\" 10=(1,2,0) 40=5 1=\"Hello\" 50=30 "
              "100=\"AcDbText\"");
}

TEST(EntityList, EntModRefusals) {
    const std::string lockedLayer =
        "  0\nLAYER\n  5\nC0\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nLOCKED\n 70\n4\n 62\n7\n  6\nContinuous\n";
    WorkingDrawing d = WorkingDrawing::withEntities(
        "  0\nLINE\n  5\nB0\n100\nAcDbEntity\n  8\nLOCKED\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n1.0\n 31\n0.0\n"
        "  0\nLINE\n  5\nB1\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n1.0\n 31\n0.0\n",
        lockedLayer);
    kcad_name locked, open;
    d.name(L"B0", locked);
    d.name(L"B1", open);
    const std::string before = test::dumpTags(*db::recordOf(open));

    ListGuard onLocked(kcdbEntGet(locked));
    EXPECT_EQ(kcdbEntMod(onLocked.list), RTERROR) << "an entity on a locked layer";

    ListGuard badLinetype(kcutBuildList(-1, open, 6, L"NoSuchLinetype", RTNONE));
    EXPECT_EQ(kcdbEntMod(badLinetype.list), RTERROR);
    ListGuard noName(kcutBuildList(62, 1, RTNONE));
    EXPECT_EQ(kcdbEntMod(noName.list), RTERROR);
    const kcad_name forged{0x7fffffff00000001LL, 0};
    ListGuard unknown(kcutBuildList(-1, forged, 62, 1, RTNONE));
    EXPECT_EQ(kcdbEntMod(unknown.list), RTERROR);
    EXPECT_EQ(test::dumpTags(*db::recordOf(open)), before) << "a refused list changes nothing";
}

TEST(EntityList, EntMakeRefusesMalformedListsAndCreatesValidOnes) {
    WorkingDrawing d = WorkingDrawing::withEntities("");
    const double p[3] = {1, 2, 0};
    const double q[3] = {4, 6, 0};
    struct Case {
        const char* why;
        resbuf* list;
    } refused[] = {
        {"no type", kcutBuildList(10, p, 11, q, RTNONE)},
        {"unknown type", kcutBuildList(RTDXF0, L"NOSUCHTHING", 10, p, RTNONE)},
        {"unknown linetype", kcutBuildList(RTDXF0, L"LINE", 6, L"Dashdot99", 10, p, 11, q, RTNONE)},
        {"unknown text style", kcutBuildList(RTDXF0, L"TEXT", 7, L"NoStyle", 10, p, 40, 2.5, 1, L"x", RTNONE)},
        {"a layer without name", kcutBuildList(RTDXF0, L"LINE", 8, L"", 10, p, 11, q, RTNONE)},
        {"a table record without name", kcutBuildList(RTDXF0, L"STYLE", 70, 0, RTNONE)},
    };
    kcad_name lastBefore;
    const int hadLast = kcdbEntLast(lastBefore);
    for (Case& c : refused) {
        EXPECT_EQ(kcdbEntMake(c.list), RTERROR) << c.why;
        kcutRelRb(c.list);
    }
    kcad_name lastAfter;
    EXPECT_EQ(kcdbEntLast(lastAfter), hadLast) << "nothing was created";

    ListGuard line(kcutBuildList(RTDXF0, L"LINE", 8, L"NEWLAYER", 10, p, 11, q, RTNONE));
    ASSERT_EQ(kcdbEntMake(line.list), RTNORM);
    kcad_name made;
    ASSERT_EQ(kcdbEntLast(made), RTNORM);
    ListGuard back(kcdbEntGet(made));
    EXPECT_STREQ(item(back.list, 8)->resval.rstring, L"NEWLAYER");
    EXPECT_EQ(item(back.list, 11)->resval.rpoint[1], 6.0);
    ListGuard layer(kcdbTblSearch(L"LAYER", L"newlayer"));
    EXPECT_NE(layer.list, nullptr) << "a missing layer is created";
}

TEST(EntityList, JustifiedTextTakesItsPositionFromTheAlignmentPoint) {
    WorkingDrawing d = WorkingDrawing::withEntities("");
    const double at[3] = {10, 5, 0};
    ListGuard text(kcutBuildList(RTDXF0, L"TEXT", 10, at, 11, at, 40, 2.0, 1, L"ABCD", 72, 2, RTNONE));
    ASSERT_EQ(kcdbEntMake(text.list), RTNORM);
    kcad_name made;
    kcdbEntLast(made);
    ListGuard back(kcdbEntGet(made));
    const double* position = item(back.list, 10)->resval.rpoint;
    EXPECT_LT(position[0], 10.0) << "a right-justified text starts left of its alignment point";
    EXPECT_DOUBLE_EQ(position[1], 5.0);
    EXPECT_DOUBLE_EQ(item(back.list, 11)->resval.rpoint[0], 10.0);
}

TEST(EntityList, EntNextWalksAttributesAndBlockDefinitions) {
    const std::string insert =
        "  0\nINSERT\n  5\nD0\n100\nAcDbEntity\n  8\n0\n100\nAcDbBlockReference\n 66\n1\n  2\nTAG\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
        "  0\nATTRIB\n  5\nD1\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 40\n1.0\n  1\nv\n100\nAcDbAttribute\n  2\nT\n 70\n0\n"
        "  0\nSEQEND\n  5\nD2\n100\nAcDbEntity\n  8\n0\n"
        "  0\nLINE\n  5\nD3\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n1.0\n 31\n0.0\n";
    std::string text = test::drawingText(insert);
    // A block "TAG" with two lines, placed before ENDSEC of the BLOCKS section.
    const std::string block =
        "  0\nBLOCK\n  5\nE0\n100\nAcDbEntity\n  8\n0\n100\nAcDbBlockBegin\n  2\nTAG\n 70\n0\n 10\n0.0\n 20\n0.0\n 30\n0.0\n  3\nTAG\n  1\n\n"
        "  0\nLINE\n  5\nE1\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n0.0\n 31\n0.0\n"
        "  0\nLINE\n  5\nE2\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n0.0\n 21\n1.0\n 31\n0.0\n"
        "  0\nENDBLK\n  5\nE3\n100\nAcDbEntity\n  8\n0\n100\nAcDbBlockEnd\n";
    const size_t blocksEnd = text.find("  0\nENDSEC", text.find("  2\nBLOCKS\n"));
    text.insert(blocksEnd, block);
    WorkingDrawing d(text);

    std::vector<int64_t> handles;
    kcad_name current{0, 0}, next;
    while (kcdbEntNext(current, next) == RTNORM) {
        handles.push_back(next[1]);
        current[0] = next[0];
        current[1] = next[1];
    }
    EXPECT_EQ(handles, (std::vector<int64_t>{0xD0, 0xD1, 0xD2, 0xD3}));

    ListGuard blockList(kcdbTblSearch(L"BLOCK", L"tag"));
    const resbuf* first = item(blockList.list, -2);
    ASSERT_NE(first, nullptr);
    kcad_name walk{first->resval.rlname[0], first->resval.rlname[1]};
    EXPECT_EQ(walk[1], 0xE1);
    ASSERT_EQ(kcdbEntNext(walk, next), RTNORM);
    EXPECT_EQ(next[1], 0xE2);
    EXPECT_EQ(kcdbEntNext(next, walk), RTERROR) << "a block's walk ends after its last entity";
}

// Erasing a reference takes its attributes along, by either road; restoring it brings them back.
TEST(EntityList, ErasingAReferenceErasesItsAttributes) {
    const std::string insert =
        "  0\nINSERT\n  5\nD0\n100\nAcDbEntity\n  8\n0\n100\nAcDbBlockReference\n 66\n1\n  2\nTAG\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
        "  0\nATTRIB\n  5\nD1\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 40\n1.0\n  1\nv\n100\nAcDbAttribute\n  2\nT\n 70\n0\n"
        "  0\nSEQEND\n  5\nD2\n100\nAcDbEntity\n  8\n0\n";
    WorkingDrawing d = WorkingDrawing::withEntities(insert);
    kcad_name reference, attribute;
    ASSERT_EQ(kcdbHandEnt(L"D0", reference), RTNORM);
    ASSERT_EQ(kcdbHandEnt(L"D1", attribute), RTNORM);

    ASSERT_EQ(kcdbEntDel(reference), RTNORM);
    EXPECT_EQ(ListGuard(kcdbEntGet(attribute)).list, nullptr) << "the attribute went with its reference";
    ASSERT_EQ(kcdbEntDel(reference), RTNORM);
    EXPECT_NE(ListGuard(kcdbEntGet(attribute)).list, nullptr) << "and came back with it";

    KcDbEntity* entity = nullptr;
    ASSERT_EQ(kcdbOpenObject(entity, d.id(L"D0"), KcDb::kForWrite), Kcad::eOk);
    EXPECT_EQ(entity->erase(), Kcad::eOk);
    entity->close();
    EXPECT_EQ(ListGuard(kcdbEntGet(attribute)).list, nullptr);
}

TEST(EntityList, TableSearchListsModifyThroughEntMod) {
    WorkingDrawing d = WorkingDrawing::withEntities("");
    ListGuard layer(kcdbTblSearch(L"layer", L"0"));
    ASSERT_NE(layer.list, nullptr);
    EXPECT_EQ(layer.list->restype, -1);
    EXPECT_STREQ(item(layer.list, 0)->resval.rstring, L"LAYER");
    const_cast<resbuf*>(item(layer.list, 70))->resval.rint = 1 | 64;  // frozen; 64 is the host's to set
    ASSERT_EQ(kcdbEntMod(layer.list), RTNORM);
    ListGuard after(kcdbTblSearch(L"LAYER", L"0"));
    EXPECT_EQ(item(after.list, 70)->resval.rint, 1);

    EXPECT_EQ(kcdbTblSearch(L"_.-LAYER", L"0"), nullptr) << "an unknown table name";
    EXPECT_EQ(kcdbTblSearch(L"LAYER", L"NoSuchLayer"), nullptr);

    // The BLOCK walk leaves out model and paper space.
    int blocks = 0;
    for (resbuf* rb = kcdbTblNext(L"BLOCK", 1); rb; rb = kcdbTblNext(L"BLOCK", 0)) {
        ++blocks;
        kcutRelRb(rb);
    }
    EXPECT_EQ(blocks, 0);
}

TEST(EntityList, BuildListCopiesEveryKindOfValue) {
    const double point[3] = {1, 2, 3};
    const kcad_name name{42, 7};
    ListGuard list(kcutBuildList(RTDXF0, L"LINE", 8, L"L", 40, 2.5, 70, 3, 90, 70000, 10, point, -1, name, RTSHORT, 5,
                                 RTSTR, L"s", RTNONE));
    EXPECT_EQ(codesOf(list.list), (std::vector<int>{0, 8, 40, 70, 90, 10, -1, RTSHORT, RTSTR}));
    EXPECT_STREQ(item(list.list, 0)->resval.rstring, L"LINE");
    EXPECT_EQ(item(list.list, 90)->resval.rlong, 70000);
    EXPECT_EQ(item(list.list, 10)->resval.rpoint[2], 3.0);
    EXPECT_EQ(item(list.list, -1)->resval.rlname[0], 42);
}

}  // namespace
}  // namespace korva
