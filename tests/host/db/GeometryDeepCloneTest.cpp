// deepCloneObjects: clones with fresh handles in the owner block, with what they
// own (attributes, vertices, SEQEND, extension dictionaries and their entries, a
// dimension's graphics block), an id map of every source and clone, and
// references among the clones translated to the clones.
#include <set>

#include "GeometryTestSupport.h"
#include "db/EntityGeometry.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"

namespace korva {
namespace {

using db::ObjectRecord;

constexpr const char* kEntities =
    // A0: a line with an extension dictionary (B0 holding the XRECORD B1) and a group reactor.
    "0 LINE\n5 A0\n102 {ACAD_REACTORS\n330 C1\n102 }\n102 {ACAD_XDICTIONARY\n360 B0\n102 }\n100 AcDbEntity\n8 0\n"
    "100 AcDbLine\n10 0\n20 0\n30 0\n11 1\n21 0\n31 0\n1001 APP\n1005 A2\n"
    // A1: a reference with an attribute.
    "0 INSERT\n5 A1\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n66 1\n2 B\n10 5\n20 0\n30 0\n"
    "0 ATTRIB\n5 A3\n100 AcDbEntity\n8 0\n100 AcDbText\n10 5\n20 -1\n30 0\n40 1\n1 V\n100 AcDbAttribute\n2 T\n70 0\n"
    "0 SEQEND\n5 A4\n100 AcDbEntity\n8 0\n"
    // A2: an MTEXT the line's extended data points at.
    "0 MTEXT\n5 A2\n100 AcDbEntity\n8 0\n100 AcDbMText\n10 0\n20 5\n30 0\n40 1\n41 0\n71 1\n1 note\n"
    // A5: a dimension with its graphics block.
    "0 DIMENSION\n5 A5\n100 AcDbEntity\n8 0\n100 AcDbDimension\n2 *D7\n10 10\n20 0\n30 0\n11 5\n21 1\n31 0\n70 33\n"
    "1 \n100 AcDbAlignedDimension\n13 0\n23 0\n33 0\n14 10\n24 0\n34 0\n";

constexpr const char* kBlocks =
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 B\n70 2\n10 0\n20 0\n30 0\n3 B\n"
    "0 ATTDEF\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 -1\n30 0\n40 1\n1 \n100 AcDbAttributeDefinition\n3 P\n"
    "2 T\n70 0\n0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n"
    "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 *D7\n70 1\n10 0\n20 0\n30 0\n3 *D7\n"
    "0 LINE\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 10\n21 0\n31 0\n"
    "0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n";

constexpr const char* kObjects =
    "0 DICTIONARY\n5 C\n330 0\n100 AcDbDictionary\n281 1\n3 ACAD_GROUP\n350 C0\n"
    "0 DICTIONARY\n5 C0\n330 C\n100 AcDbDictionary\n281 1\n3 G1\n350 C1\n"
    "0 GROUP\n5 C1\n330 C0\n100 AcDbGroup\n300 \n70 0\n71 1\n340 A0\n"
    "0 DICTIONARY\n5 B0\n330 A0\n100 AcDbDictionary\n280 1\n281 1\n3 MYDATA\n360 B1\n"
    "0 XRECORD\n5 B1\n102 {ACAD_REACTORS\n330 B0\n102 }\n330 B0\n100 AcDbXrecord\n280 1\n1 hello\n";

struct Cloned {
    test::SnippetDrawing drawing = test::readSnippet(kEntities, kBlocks, "AC1032", kObjects);
    KcDbIdMapping map;

    ObjectRecord& byHandle(db::Handle h) const { return *drawing.drawing().findByHandle(h); }
    ObjectRecord* cloneOf(db::Handle source) const {
        KcDbIdPair pair(drawing.id(byHandle(source)), KcDbObjectId(), false);
        return map.compute(pair) ? db::ObjectAccess::record(pair.value()) : nullptr;
    }
    KcDbIdPair pairOf(db::Handle source) const {
        KcDbIdPair pair(drawing.id(byHandle(source)), KcDbObjectId(), false);
        map.compute(pair);
        return pair;
    }
    Kcad::ErrorStatus clone(std::initializer_list<db::Handle> handles, const ObjectRecord& owner) {
        KcDbObjectIdArray ids;
        for (db::Handle h : handles) ids.append(drawing.id(byHandle(h)));
        return drawing.database->deepCloneObjects(ids, drawing.id(owner), map);
    }
};

TEST(DeepClone, ClonesGetNewHandlesTheOwnerBlockAndAnIdMap) {
    Cloned c;
    ObjectRecord& modelSpace = *c.drawing.drawing().modelSpace();
    ASSERT_EQ(c.clone({0xA0, 0xA1, 0xA2}, modelSpace), Kcad::eOk);
    // Three primary entities, the attribute and SEQEND, the dictionary and its XRECORD.
    EXPECT_EQ(c.map.size(), 7u);
    for (db::Handle source : {0xA0, 0xA1, 0xA2}) {
        const KcDbIdPair pair = c.pairOf(source);
        EXPECT_TRUE(pair.isCloned());
        EXPECT_TRUE(pair.isPrimary());
        const ObjectRecord* clone = db::ObjectAccess::record(pair.value());
        ASSERT_NE(clone, nullptr);
        EXPECT_NE(clone->handle, source);
        EXPECT_EQ(clone->owner, &modelSpace);
        EXPECT_EQ(db::fieldHandle(*clone, {}, 330), modelSpace.handle);
        EXPECT_EQ(c.drawing.drawing().findByHandle(clone->handle), clone);
    }
    for (db::Handle sub : {0xA3, 0xA4, 0xB0, 0xB1}) {
        EXPECT_FALSE(c.pairOf(sub).isPrimary()) << std::hex << sub;
        EXPECT_NE(c.cloneOf(sub), nullptr) << std::hex << sub;
    }
    const ObjectRecord& insertClone = *c.cloneOf(0xA1);
    ASSERT_TRUE(insertClone.container);
    ASSERT_EQ(insertClone.container->members.size(), 1u);
    EXPECT_EQ(insertClone.container->members[0], c.cloneOf(0xA3));
    EXPECT_EQ(insertClone.container->members[0]->owner, &insertClone);
    EXPECT_EQ(db::fieldHandle(*insertClone.container->members[0], {}, 330), insertClone.handle);
    EXPECT_EQ(insertClone.container->end, c.cloneOf(0xA4));
    EXPECT_TRUE(test::reloadsUnchanged(c.drawing.drawing()));
}

TEST(DeepClone, ReferencesAmongClonesAreTranslated) {
    Cloned c;
    ASSERT_EQ(c.clone({0xA0, 0xA2}, *c.drawing.drawing().modelSpace()), Kcad::eOk);
    const ObjectRecord& line = *c.cloneOf(0xA0);
    const ObjectRecord& dictionary = *c.cloneOf(0xB0);
    const ObjectRecord& xrecord = *c.cloneOf(0xB1);
    EXPECT_EQ(db::applicationGroupHandles(line, "{ACAD_XDICTIONARY"), std::vector<db::Handle>{dictionary.handle});
    EXPECT_TRUE(db::applicationGroupHandles(line, "{ACAD_REACTORS").empty()) << "the group does not hold the clone";
    EXPECT_EQ(db::fieldHandle(dictionary, {}, 330), line.handle);
    EXPECT_EQ(db::fieldHandle(dictionary, {}, 360), xrecord.handle);
    EXPECT_EQ(db::applicationGroupHandles(xrecord, "{ACAD_REACTORS"), std::vector<db::Handle>{dictionary.handle});
    EXPECT_EQ(xrecord.owner, &dictionary);
    // The extended-data handle to the MTEXT now names the MTEXT's clone.
    db::Handle xdataHandle = 0;
    for (db::TagRef t : line.tags) {
        if (t.code() == 1005) xdataHandle = t.handle();
    }
    EXPECT_EQ(xdataHandle, c.cloneOf(0xA2)->handle);
    // The sources are untouched.
    EXPECT_EQ(db::applicationGroupHandles(c.byHandle(0xA0), "{ACAD_XDICTIONARY"), std::vector<db::Handle>{0xB0});
    EXPECT_TRUE(test::reloadsUnchanged(c.drawing.drawing()));
}

TEST(DeepClone, ReferenceToAnObjectNotClonedStays) {
    Cloned c;
    ASSERT_EQ(c.clone({0xA0}, *c.drawing.drawing().modelSpace()), Kcad::eOk);
    db::Handle xdataHandle = 0;
    for (db::TagRef t : c.cloneOf(0xA0)->tags) {
        if (t.code() == 1005) xdataHandle = t.handle();
    }
    EXPECT_EQ(xdataHandle, 0xA2u);
}

TEST(DeepClone, IntoANewBlockForAnAnonymousBlockReference) {
    Cloned c;
    ObjectRecord& block = db::createBlock(c.drawing.drawing(), "*U1");
    ASSERT_EQ(c.clone({0xA0, 0xA1}, block), Kcad::eOk);
    ASSERT_EQ(block.container->members.size(), 2u);
    EXPECT_EQ(block.container->members[0], c.cloneOf(0xA0));
    EXPECT_EQ(db::fieldHandle(*block.container->members[1], {}, 330), block.handle);
    geom::Box3d box;
    ASSERT_TRUE(db::entityExtents(*block.container->members[0], box));
    EXPECT_TRUE(test::boxNear(box, {0, 0, 0}, {1, 0, 0}));
    EXPECT_TRUE(test::reloadsUnchanged(c.drawing.drawing()));
}

TEST(DeepClone, DimensionCloneOwnsACopyOfItsGraphics) {
    Cloned c;
    ASSERT_EQ(c.clone({0xA5}, *c.drawing.drawing().modelSpace()), Kcad::eOk);
    ObjectRecord& clone = *c.cloneOf(0xA5);
    const std::string blockName(db::fieldText(clone, "AcDbDimension", 2));
    EXPECT_NE(blockName, "*D7");
    ASSERT_NE(c.drawing.block(blockName), nullptr);
    ASSERT_EQ(db::transformEntity(clone, KcGeMatrix3d::translation({0, 3, 0})), Kcad::eOk);
    geom::Box3d source, moved;
    ASSERT_TRUE(db::entityExtents(c.byHandle(0xA5), source));
    ASSERT_TRUE(db::entityExtents(clone, moved));
    EXPECT_TRUE(test::boxNear(source, {0, 0, 0}, {10, 0, 0}));
    EXPECT_TRUE(test::boxNear(moved, {0, 3, 0}, {10, 3, 0}));
    EXPECT_TRUE(test::reloadsUnchanged(c.drawing.drawing()));
}

TEST(DeepClone, BadRequestsCloneNothing) {
    Cloned c;
    ObjectRecord& modelSpace = *c.drawing.drawing().modelSpace();
    const uint32_t records = c.drawing.drawing().recordCount();
    EXPECT_EQ(c.clone({0xA0}, c.byHandle(0xB0)), Kcad::eInvalidInput) << "an entity needs a block record";
    EXPECT_EQ(c.clone({0xA3}, modelSpace), Kcad::eInvalidInput) << "an attribute goes with its reference";
    c.byHandle(0xA2).erased = true;
    EXPECT_EQ(c.clone({0xA0, 0xA2}, modelSpace), Kcad::eWasErased);
    KcDbObjectIdArray ids;
    ids.append(c.drawing.id(c.byHandle(0xA0)));
    EXPECT_EQ(c.drawing.database->deepCloneObjects(ids, KcDbObjectId(), c.map), Kcad::eInvalidInput);
    EXPECT_EQ(c.drawing.drawing().recordCount(), records);
    EXPECT_EQ(c.map.size(), 0u);
}

}  // namespace
}  // namespace korva
