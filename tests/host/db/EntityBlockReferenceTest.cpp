// Block references: the block transform, the block record by name, multiple
// inserts, and appending attributes (resident, owned, closed by a SEQEND that
// is created once), in modern and R12 drawings, through save and reload.
#include <cmath>

#include "EntityTestSupport.h"
#include "db/RecordFields.h"
#include "geom/Ocs.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

constexpr double kPi = 3.14159265358979323846;

void expectPoint(const KcGePoint3d& actual, const KcGePoint3d& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.z, expected.z, 1e-9);
}

// Block "BLK" with base point (5, 5) and a second block "B2".
DxfParts blockParts(const std::string& entities) {
    DxfParts parts{entities};
    addBlock(parts, "BLK", "90", "91", "92", "5.0", "5.0");
    return addBlock(parts, "B2", "93", "94", "95", "5.0", "5.0");
}

std::string insertText(std::string_view handle, std::initializer_list<std::pair<int, std::string_view>> extra,
                       std::string_view layer = "WALLS") {
    return modernHead("INSERT", handle, "AcDbBlockReference", layer) + dxfTags({{2, "BLK"}}) + dxfTags(extra);
}

struct TransformCase {
    const char* name;
    std::string insert;                 // groups after 2
    KcGePoint3d blockPoint, expected;   // a point of the block and where it lands
};

void PrintTo(const TransformCase& c, std::ostream* out) { *out << c.name; }

class BlockTransform : public ::testing::TestWithParam<TransformCase> {};

// Base point to origin, scale, rotation, the OCS, then the insertion point.
TEST_P(BlockTransform, MapsBlockPointsToTheWorld) {
    const TransformCase& c = GetParam();
    auto database = loadDatabase(modernDxf(blockParts(modernHead("INSERT", "100", "AcDbBlockReference") + c.insert)));
    ASSERT_TRUE(database);
    Opened<KcDbBlockReference> reference(*database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(reference);
    expectPoint(reference->blockTransform() * c.blockPoint, c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Entities, BlockTransform,
    ::testing::Values(
        TransformCase{"BasePointLandsOnTheInsertionPoint",
                      dxfTags({{2, "BLK"}, {10, "10.0"}, {20, "0.0"}, {30, "0.0"}}), {5, 5, 0}, {10, 0, 0}},
        // (6, 5) is 1 right of the base: scaled 2, turned 90 degrees -> 2 up.
        TransformCase{"ScaledAndRotated",
                      dxfTags({{2, "BLK"}, {10, "10.0"}, {20, "0.0"}, {30, "0.0"}, {41, "2.0"}, {42, "2.0"},
                               {43, "2.0"}, {50, "90.0"}}),
                      {6, 5, 0}, {10, 2, 0}},
        TransformCase{"NonUniformScale",
                      dxfTags({{2, "BLK"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {41, "3.0"}, {42, "-1.0"}}),
                      {6, 6, 0}, {3, -1, 0}},
        // Extrusion -z: the OCS x axis is world -x; the insertion point (1, 1) is world (-1, 1).
        TransformCase{"MirroringExtrusion",
                      dxfTags({{2, "BLK"}, {10, "1.0"}, {20, "1.0"}, {30, "0.0"}, {210, "0.0"}, {220, "0.0"},
                               {230, "-1.0"}}),
                      {6, 5, 0}, {-2, 1, 0}}),
    [](const ::testing::TestParamInfo<TransformCase>& param) { return std::string(param.param.name); });

// The block record is found and set by name (group 2); a layout block cannot be inserted.
TEST(EntityBlockReference, BlockRecordIsTheOneNamedInGroup2) {
    auto database = loadDatabase(modernDxf(blockParts(insertText("100", {{10, "0.0"}, {20, "0.0"}, {30, "0.0"}}))));
    ASSERT_TRUE(database);
    Opened<KcDbBlockReference> reference(*database, 0x100, KcDb::kForWrite);
    ASSERT_TRUE(reference);
    EXPECT_EQ(reference->blockTableRecord(), idOf(*database, 0x90));
    ASSERT_EQ(reference->setBlockTableRecord(idOf(*database, 0x93)), Kcad::eOk);
    EXPECT_EQ(db::fieldText(recordOf(*database, 0x100), "AcDbBlockReference", 2), "B2");
    EXPECT_EQ(reference->blockTableRecord(), idOf(*database, 0x93));
    EXPECT_EQ(reference->setBlockTableRecord(database->modelSpaceId()), Kcad::eInvalidInput);
}

// Columns, rows and spacings of a multiple insert (70, 71, 44, 45).
TEST(EntityBlockReference, MultipleInsertReadsItsGrid) {
    auto database = loadDatabase(modernDxf(blockParts(
        insertText("100", {{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {70, "3"}, {71, "2"}, {44, "5.0"}, {45, "6.5"}}))));
    ASSERT_TRUE(database);
    Opened<KcDbMInsertBlock> grid(*database, 0x100, KcDb::kForRead);
    ASSERT_TRUE(grid) << grid.status();
    EXPECT_EQ(grid->isA(), KcDbMInsertBlock::desc());
    EXPECT_EQ(grid->columns(), 3);
    EXPECT_EQ(grid->rows(), 2);
    EXPECT_EQ(grid->columnSpacing(), 5.0);
    EXPECT_EQ(grid->rowSpacing(), 6.5);
}

const db::ObjectRecord* sequenceEndOf(const db::ObjectRecord& reference) {
    return reference.container ? reference.container->end : nullptr;
}

// Appending attributes: the first creates the SEQEND, both end up owned, in order.
TEST(EntityBlockReference, AppendedAttributesBecomeResidentAndOwned) {
    auto database = loadDatabase(modernDxf(blockParts(insertText("100", {{10, "0.0"}, {20, "0.0"}, {30, "0.0"}}))));
    ASSERT_TRUE(database);
    db::ObjectRecord& referenceRecord = recordOf(*database, 0x100);
    KcDbObjectId firstId, secondId;
    {
        Opened<KcDbBlockReference> reference(*database, 0x100, KcDb::kForWrite);
        ASSERT_TRUE(reference);
        auto* first = new KcDbAttribute({1, 2, 0}, L"one", L"FIRST");
        ASSERT_EQ(reference->appendAttribute(firstId, first), Kcad::eOk);
        EXPECT_TRUE(first->isWriteEnabled());  // stays open for the caller
        EXPECT_EQ(first->ownerId(), reference->objectId());
        EXPECT_EQ(first->close(), Kcad::eOk);
        auto* second = new KcDbAttribute({1, 4, 0}, L"two", L"SECOND");
        ASSERT_EQ(reference->appendAttribute(second), Kcad::eOk);
        secondId = second->objectId();
        second->close();
    }
    ASSERT_TRUE(referenceRecord.container);
    ASSERT_EQ(referenceRecord.container->members.size(), 2u);
    const db::ObjectRecord& first = *db::ObjectAccess::record(firstId);
    EXPECT_EQ(referenceRecord.container->members[0], &first);
    EXPECT_EQ(referenceRecord.container->members[1]->order, 1u);
    EXPECT_EQ(db::fieldHandle(first, {}, 330), 0x100u);
    EXPECT_EQ(db::fieldText(first, "AcDbEntity", 8), "WALLS");  // an empty layer takes the reference's
    EXPECT_EQ(db::fieldInteger(referenceRecord, "AcDbBlockReference", 66), 1);
    const db::ObjectRecord* seqend = sequenceEndOf(referenceRecord);
    ASSERT_NE(seqend, nullptr);
    EXPECT_EQ(seqend->type, db::Type::SeqEnd);
    EXPECT_EQ(seqend->owner, &referenceRecord);
    EXPECT_NE(seqend->handle, 0u);
    EXPECT_EQ(database->drawing().findByHandle(seqend->handle), seqend);
    EXPECT_EQ(db::fieldHandle(*seqend, {}, 330), 0x100u);
    EXPECT_EQ(db::fieldText(*seqend, "AcDbEntity", 8), "WALLS");

    Opened<KcDbBlockReference> reader(*database, 0x100, KcDb::kForRead);
    std::unique_ptr<KcDbObjectIterator> it(reader->attributeIterator());
    std::vector<std::wstring> tags;
    for (; !it->done(); it->step()) tags.push_back(KcDbAttribute::cast(it->entity())->tagConst());
    EXPECT_EQ(tags, (std::vector<std::wstring>{L"FIRST", L"SECOND"}));
    it->start(true);
    EXPECT_EQ(it->objectId(), secondId);

    // Saved and read back: the same INSERT, ATTRIBs and SEQEND.
    const std::vector<db::Handle> handles{0x100, firstId.handle(), secondId.handle(), seqend->handle};
    std::unique_ptr<db::Drawing> reloaded = saveAndReload(database->drawing());
    ASSERT_TRUE(reloaded);
    for (db::Handle handle : handles) {
        const db::ObjectRecord* again = reloaded->findByHandle(handle);
        ASSERT_NE(again, nullptr) << handle;
        EXPECT_EQ(again->tags.decode(), database->drawing().findByHandle(handle)->tags.decode()) << dumpTags(*again);
    }
    const db::ObjectRecord* reloadedReference = reloaded->findByHandle(0x100);
    ASSERT_TRUE(reloadedReference->container);
    EXPECT_EQ(reloadedReference->container->members.size(), 2u);
    EXPECT_EQ(reloadedReference->container->end->handle, seqend->handle);
}

// An R12 reference gets attributes and a SEQEND without subclass markers or owner groups.
TEST(EntityBlockReference, R12AttributesHaveNoMarkers) {
    const std::string entities =
        dxfTags({{0, "INSERT"}, {5, "24"}, {8, "WALLS"}, {2, "BLK"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}});
    const std::string blocks = dxfTags({{0, "BLOCK"}, {8, "0"}, {2, "BLK"}, {70, "2"}, {10, "0.0"}, {20, "0.0"},
                                        {30, "0.0"}}) +
                               dxfTags({{0, "ENDBLK"}, {8, "0"}});
    auto database = loadDatabase(r12Dxf(entities, blocks));
    ASSERT_TRUE(database);
    KcDbObjectId id;
    {
        Opened<KcDbBlockReference> reference(*database, 0x24, KcDb::kForWrite);
        auto* attribute = new KcDbAttribute({0, 0, 0}, L"v", L"TAG");
        ASSERT_EQ(reference->appendAttribute(id, attribute), Kcad::eOk);
        attribute->close();
    }
    const db::ObjectRecord& attribute = *db::ObjectAccess::record(id);
    const db::ObjectRecord& reference = recordOf(*database, 0x24);
    for (const db::ObjectRecord* record : {&attribute, sequenceEndOf(reference)}) {
        ASSERT_NE(record, nullptr);
        for (db::TagRef tag : record->tags) {
            EXPECT_NE(tag.code(), 100) << dumpTags(*record);
            EXPECT_NE(tag.code(), 330) << dumpTags(*record);
        }
    }
    EXPECT_EQ(db::fieldText(attribute, {}, 2), "TAG");
    EXPECT_EQ(db::fieldInteger(reference, {}, 66), 1);
    std::unique_ptr<db::Drawing> reloaded = saveAndReload(database->drawing());
    ASSERT_TRUE(reloaded);
    const db::ObjectRecord* again = reloaded->findByHandle(0x24);
    ASSERT_TRUE(again && again->container);
    ASSERT_EQ(again->container->members.size(), 1u);
    EXPECT_EQ(again->container->members[0]->tags.decode(), attribute.tags.decode());
}

// What appendAttribute refuses, and that a refusal leaves the reference as it was.
TEST(EntityBlockReference, AppendAttributeRefusesWhatItCannotTake) {
    auto database = loadDatabase(modernDxf(blockParts(insertText("100", {{10, "0.0"}, {20, "0.0"}, {30, "0.0"}}))));
    ASSERT_TRUE(database);
    const std::vector<db::Tag> before = recordOf(*database, 0x100).tags.decode();
    {
        Opened<KcDbBlockReference> reader(*database, 0x100, KcDb::kForRead);
        KcDbAttribute attribute({0, 0, 0}, L"v", L"TAG");
        EXPECT_EQ(reader->appendAttribute(&attribute), Kcad::eNotOpenForWrite);
    }
    {
        Opened<KcDbBlockReference> writer(*database, 0x100, KcDb::kForWrite);
        EXPECT_EQ(writer->appendAttribute(nullptr), Kcad::eNullEntityPointer);
    }
    KcDbBlockReference notAdded({0, 0, 0}, idOf(*database, 0x90));
    KcDbAttribute attribute({0, 0, 0}, L"v", L"TAG");
    EXPECT_EQ(notAdded.appendAttribute(&attribute), Kcad::eNotInDatabase);
    EXPECT_EQ(recordOf(*database, 0x100).tags.decode(), before);
    EXPECT_FALSE(recordOf(*database, 0x100).container);
}

// An attribute made from its definition takes tag, text and place, moved by the block transform.
TEST(EntityBlockReference, AttributeFromDefinitionTakesItsGroups) {
    KcDbAttributeDefinition definition({1, 1, 0}, L"default", L"PART", L"Part number?");
    ASSERT_EQ(definition.setHeight(2.0), Kcad::eOk);
    ASSERT_EQ(definition.setInvisible(true), Kcad::eOk);
    KcDbAttribute attribute;
    ASSERT_EQ(attribute.setAttributeFromBlock(&definition, KcGeMatrix3d::translation({10, 0, 0})), Kcad::eOk);
    EXPECT_STREQ(attribute.tagConst(), L"PART");
    EXPECT_STREQ(attribute.textStringConst(), L"default");
    EXPECT_EQ(attribute.height(), 2.0);
    EXPECT_TRUE(attribute.isInvisible());
    expectPoint(attribute.position(), {11, 1, 0});
}

}  // namespace
}  // namespace korva::test
