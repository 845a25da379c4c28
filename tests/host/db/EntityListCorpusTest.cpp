// Over every entity of the corpus: the entity list holds each group the entity
// has, in its order, and giving the unchanged list back (kcdbEntMod of an
// unchanged list) changes nothing.
#include <gtest/gtest.h>

#include "DrawingCompare.h"
#include "TestFiles.h"
#include "db/EntityList.h"
#include "db/RecordParts.h"
#include "dxf/DxfReader.h"

namespace korva {
namespace {

// A record's tags for a failure message, cut short: corpus entities can be huge.
std::string shortDump(const db::ObjectRecord& record) { return test::dumpTags(record).substr(0, 400); }

// Whether each stored group of the record appears in the list, in order (values
// compared except for angles, which the list holds in radians).
bool listCoversStoredGroups(const db::ObjectRecord& record, const std::vector<db::Tag>& list, std::string& missing) {
    const db::RecordParts parts = db::splitRecord(record);
    std::vector<const db::Tag*> stored;
    for (const db::Tag& t : parts.common) stored.push_back(&t);
    for (const db::SubclassRun& run : parts.runs) {
        for (const db::Tag& t : run.tags) stored.push_back(&t);
    }
    size_t at = 0;
    for (const db::Tag* t : stored) {
        bool found = false;
        for (size_t i = at; i < list.size() && !found; ++i) {
            if (list[i].code != t->code || list[i].kind != t->kind) continue;
            const bool sameValue = t->kind == db::TagKind::Real ? true : list[i] == *t;
            if (sameValue) {
                at = i + 1;
                found = true;
            }
        }
        if (!found) {
            missing = "group " + std::to_string(t->code);
            return false;
        }
    }
    return true;
}

TEST(EntityListCorpus, ListsCoverEveryGroupAndAnUnchangedListChangesNothing) {
    size_t entities = 0;
    for (const auto& path : test::corpusFiles()) {
        auto loaded = dxf::readDxfFile(path.string());
        ASSERT_TRUE(loaded.ok()) << loaded.error;
        db::Drawing& d = *loaded.drawing;
        for (uint32_t i = 0; i < d.recordCount(); ++i) {
            db::ObjectRecord& record = *d.record(i);
            if (!record.isEntity() || record.erased) continue;
            ++entities;
            const std::vector<db::Tag> list = db::entityList(record);
            std::string missing;
            EXPECT_TRUE(listCoversStoredGroups(record, list, missing))
                << path.filename() << " " << shortDump(record) << ": " << missing;
            const db::TagList before = record.tags;
            const std::string problem = db::applyList(record, list);
            EXPECT_EQ(problem, "") << path.filename() << " " << shortDump(record);
            if (!(record.tags == before)) {
                db::ObjectRecord copy;
                copy.type = record.type;
                copy.tags = before;
                ADD_FAILURE() << path.filename() << ": the unchanged list changed\n  " << shortDump(copy) << "\n  "
                              << shortDump(record);
            }
            if (::testing::Test::HasFailure()) return;
        }
    }
    EXPECT_GT(entities, 10000u);
}

}  // namespace
}  // namespace korva
