// TCASE on a copy of a real drawing with many texts: every text, multiline
// text and attribute definition of model space is converted (those with
// fields excepted), attribute definitions inside a block and the attributes
// of a block reference are not, and the saved result opens in the
// independent reader and holds the converted texts.
#include <gtest/gtest.h>

#include <cwctype>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "TcaseTestSupport.h"
#include "dxf/DxfReader.h"
#include "kcdbtables.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::tcase::textOf;

struct Snapshot {
    KcDbHandle handle;
    std::wstring text;
    bool multiline = false;
    bool converted = false;  // a model-space text without fields
};

// The texts of a block's entities (and of the attributes of its references).
void collectTexts(KcDbObjectId block, bool convertible, std::vector<Snapshot>& out) {
    KcDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(kcdbOpenObject(record, block, KcDb::kForRead), Kcad::eOk);
    KcDbBlockTableRecordIterator* iterator = nullptr;
    record->newIterator(iterator);
    std::unique_ptr<KcDbBlockTableRecordIterator> owned(iterator);
    for (; iterator && !iterator->done(); iterator->step()) {
        KcDbEntity* entity = nullptr;
        if (iterator->getEntity(entity, KcDb::kForRead) != Kcad::eOk) continue;
        if (KcDbBlockReference* reference = KcDbBlockReference::cast(entity)) {
            KcDbObjectIterator* attributes = reference->attributeIterator();
            for (; attributes && !attributes->done(); attributes->step()) {
                out.push_back({attributes->objectId().handle(), textOf(attributes->objectId()), false, false});
            }
            delete attributes;
        } else if (KcDbText::cast(entity) || KcDbMText::cast(entity)) {
            const bool multiline = KcDbMText::cast(entity) != nullptr;
            out.push_back({entity->handle(), textOf(entity->objectId()), multiline, convertible && !entity->hasFields()});
        }
        entity->close();
    }
    record->close();
}

// Upper case as TCASE gives it: a TEXT string whole, a multiline text around its code pairs.
std::wstring upperCased(const std::wstring& text, bool multiline) {
    std::wstring out = text;
    for (size_t i = 0; i < out.size(); ++i) {
        if (multiline && out[i] == L'\\') {
            ++i;  // the code letter stays as it is
            continue;
        }
        out[i] = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(out[i])));
    }
    return out;
}

TEST(TcaseCorpus, UpperCasesModelSpaceTextsAndTheSavedDrawingOpensElsewhere) {
    test::TempDir dir;
    const auto original = test::corpusFile("ezdxf__text.dxf");
    const auto copy = dir.file("text.dxf");
    const auto saved = dir.file("saved.dxf");
    std::filesystem::copy_file(original, copy);
    ScriptRun run = test::withExtendModule(ScriptRun::fromFile(copy.string()));

    std::vector<Snapshot> before;
    KcDbDatabase& database = run.document().database();
    collectTexts(database.modelSpaceId(), true, before);
    KcDbBlockTable* table = nullptr;
    ASSERT_EQ(database.getBlockTable(table, KcDb::kForRead), Kcad::eOk);
    KcDbObjectId attributeBlock;
    table->getAt(L"att_block", attributeBlock);
    table->close();
    collectTexts(attributeBlock, false, before);
    size_t convertible = 0, multiline = 0;
    for (const Snapshot& s : before) {
        convertible += s.converted ? 1 : 0;
        multiline += s.converted && s.multiline ? 1 : 0;
    }
    ASSERT_GT(convertible, 60u) << "the drawing's texts were found";
    ASSERT_GT(multiline, 20u);

    ASSERT_TRUE(run.run("TCASE\nALL\n\n@check UPPERCASE\n@press OK\n")) << run.outputUtf8();
    size_t changed = 0;
    for (const Snapshot& s : before) {
        const std::wstring expected = s.converted ? upperCased(s.text, s.multiline) : s.text;
        KcDbObjectId id;
        ASSERT_EQ(database.getKcDbObjectId(id, false, s.handle), Kcad::eOk);
        EXPECT_EQ(textOf(id), expected) << std::hex << static_cast<Kcad::UInt64>(s.handle);
        changed += expected != s.text ? 1 : 0;
    }
    EXPECT_GT(changed, 40u) << "most texts hold lower-case letters";

    ASSERT_TRUE(run.run("SAVEAS\n" + saved.string() + "\n")) << run.outputUtf8();
    for (const std::string& complaint : test::openWithIndependentReader({{saved, original}})) ADD_FAILURE() << complaint;
    auto reread = dxf::readDxfFile(saved.string());
    ASSERT_TRUE(reread.ok()) << reread.error;
    KcDbDatabase savedDatabase(std::move(reread.drawing));
    for (const Snapshot& s : before) {
        KcDbObjectId id;
        ASSERT_EQ(savedDatabase.getKcDbObjectId(id, false, s.handle), Kcad::eOk);
        EXPECT_EQ(textOf(id), s.converted ? upperCased(s.text, s.multiline) : s.text) << "saved";
    }
}

}  // namespace
}  // namespace korva
