// The document manager: a second drawing opened from a copy of a corpus file
// (DXF content whatever the extension), stable document objects, switching
// back, closing, files it refuses, the application context, and the
// long-transaction manager.
#include <gtest/gtest.h>

#include <filesystem>

#include "ModuleTestSupport.h"
#include "ScriptRun.h"
#include "db/ObjectAccess.h"
#include "editor/Document.h"
#include "kcap.h"
#include "runtime/documents/LongTransactions.h"

namespace korva {
namespace {

namespace fs = std::filesystem;

class DocumentManager : public ::testing::Test {
protected:
    KcApDocManager* manager() { return kcDocManagerPtr(); }
    std::wstring copyOfCorpus(const char* name, const std::string& as) {
        fs::copy_file(test::corpusFile(name), folder_.file(as));
        return folder_.file(as).wstring();
    }
    test::TempDir folder_;
};

TEST_F(DocumentManager, OpensASecondDrawingAndSwitchesBack) {
    test::ScriptRun run;
    KcApDocument* first = manager()->curDocument();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->database(), &run.document().database());
    EXPECT_EQ(manager()->document(&run.document().database()), first) << "one object per document";

    // A comparison copy is named ".dwg" but holds DXF.
    ASSERT_EQ(manager()->appContextOpenDocument(copyOfCorpus("qcad__examples_flange.dxf", "old copy.dwg").c_str()), Kcad::eOk);
    EXPECT_EQ(manager()->documentCount(), 2);
    KcApDocument* second = manager()->curDocument();
    ASSERT_NE(second, first) << "the opened drawing is current";
    EXPECT_EQ(std::wstring(second->docTitle()), L"old copy.dwg");
    EXPECT_EQ(std::wstring(second->fileName()), folder_.file("old copy.dwg").wstring());
    EXPECT_EQ(kcdbHostApplicationServices()->workingDatabase(), second->database());
    EXPECT_GT(second->database()->drawing().recordCount(), run.drawing().recordCount()) << "the flange drawing is read";

    EXPECT_EQ(manager()->setCurDocument(first), Kcad::eOk);
    EXPECT_EQ(manager()->curDocument(), first);
    EXPECT_EQ(manager()->mdiActiveDocument(), first);
    EXPECT_EQ(editor::Session::instance().current(), &run.document());
    EXPECT_EQ(manager()->document(second->database()), second);
    EXPECT_EQ(manager()->document(nullptr), nullptr);

    EXPECT_EQ(manager()->closeDocument(second), Kcad::eOk);
    EXPECT_EQ(manager()->documentCount(), 1);
    EXPECT_EQ(manager()->setCurDocument(second), Kcad::eInvalidInput) << "a closed document is no longer known";
    EXPECT_EQ(manager()->closeDocument(second), Kcad::eInvalidInput);
    EXPECT_EQ(manager()->setCurDocument(nullptr), Kcad::eInvalidInput);
}

TEST_F(DocumentManager, RefusesFilesThatAreNotDxfDrawingsWithTheReason) {
    test::writeFileBytes(folder_.file("binary.dwg"), std::string("AC1032\0\0\x01\x02\x03", 11));
    test::writeFileBytes(folder_.file("notes.dwg"), "just some text\n");
    const struct {
        std::wstring path;
        Kcad::ErrorStatus status;
        const wchar_t* says;
    } cases[] = {
        {folder_.file("binary.dwg").wstring(), Kcad::eBadDxfFile, L"is a binary DWG drawing; this host reads DXF drawings only"},
        {folder_.file("notes.dwg").wstring(), Kcad::eBadDxfFile, L"is not a DXF drawing this host can read"},
        {folder_.file("missing.dxf").wstring(), Kcad::eCantOpenFile, L"cannot open the drawing"},
        {folder_.path().wstring(), Kcad::eCantOpenFile, L"cannot open the drawing"},
        {L"", Kcad::eInvalidInput, L""},
    };
    for (const auto& c : cases) {
        test::ScriptRun run;
        EXPECT_EQ(manager()->appContextOpenDocument(c.path.c_str()), c.status) << run.outputUtf8();
        EXPECT_TRUE(run.outputContains(c.says)) << run.outputUtf8();
        EXPECT_EQ(manager()->documentCount(), 1) << "nothing was opened";
    }
    EXPECT_EQ(manager()->appContextOpenDocument(nullptr), Kcad::eInvalidInput);
}

TEST_F(DocumentManager, TheApplicationContextLastsForTheFunction) {
    test::ScriptRun run;
    struct Visit {
        KcApDocManager* manager;
        std::wstring path;
        bool inside = false;
        Kcad::ErrorStatus opened = Kcad::eNotApplicable;
    } visit{manager(), copyOfCorpus("ezdxf__3dface.dxf", "context.dxf")};
    EXPECT_FALSE(manager()->isApplicationContext());
    manager()->executeInApplicationContext(
        [](void* data) {
            auto* v = static_cast<Visit*>(data);
            v->inside = v->manager->isApplicationContext();
            v->opened = v->manager->appContextOpenDocument(v->path.c_str());
        },
        &visit);
    EXPECT_TRUE(visit.inside);
    EXPECT_EQ(visit.opened, Kcad::eOk);
    EXPECT_FALSE(manager()->isApplicationContext()) << "it ends with the function";
    EXPECT_EQ(std::wstring(manager()->curDocument()->docTitle()), L"context.dxf");

    manager()->executeInApplicationContext([](void*) { throw std::runtime_error("context failure"); }, nullptr);
    EXPECT_FALSE(manager()->isApplicationContext()) << "an exception ends it too";
    EXPECT_TRUE(run.outputContains(L"an exception left a function run in the application context: context failure"));
}

TEST_F(DocumentManager, ALongTransactionIsNamedOnlyWhenOneWasStarted) {
    test::ScriptRun run;
    ASSERT_EQ(manager()->appContextOpenDocument(copyOfCorpus("ezdxf__3dface.dxf", "other.dxf").c_str()), Kcad::eOk);
    KcApDocument* other = manager()->curDocument();
    KcApDocument* first = manager()->document(&run.document().database());
    KcApLongTransactionManager* transactions = kcapLongTransactionManagerPtr();
    EXPECT_TRUE(transactions->currentLongTransactionFor(first).isNull());
    EXPECT_TRUE(transactions->currentLongTransactionFor(nullptr).isNull());

    runtime::startLongTransaction(run.document());
    const KcDbObjectId id = transactions->currentLongTransactionFor(first);
    EXPECT_EQ(db::ObjectAccess::record(id), run.drawing().modelSpace()) << "a real object of that document";
    EXPECT_EQ(id.database(), first->database());
    EXPECT_TRUE(transactions->currentLongTransactionFor(other).isNull()) << "only that document";
    runtime::endLongTransaction(run.document());
    EXPECT_TRUE(transactions->currentLongTransactionFor(first).isNull());
}

}  // namespace
}  // namespace korva
