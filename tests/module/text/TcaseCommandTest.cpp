// TCASE as a command on real drawings: what the selection takes (texts,
// multiline texts and attribute definitions only), what it skips (locked
// layers, texts with fields, attributes of block references, block contents),
// selections without texts, cancelling, and the mode remembered in the
// profile, including a stored value that names no mode.
#include <gtest/gtest.h>

#include <string>

#include "TcaseTestSupport.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::tcase::forgetMode;
using test::tcase::storedMode;
using test::tcase::storeMode;
using test::tcase::tcaseScript;
using test::tcase::textOf;

// TEXT 101, MTEXT 102, ATTDEF 103, LINE 104, an INSERT 105 of NOTE with the
// attribute 106, and NOTE holding the TEXT 202.
constexpr std::string_view kMixedBlockRecords = R"(
0 BLOCK_RECORD
5 200
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 NOTE
70 0
)";

constexpr std::string_view kMixedBlocks = R"(
0 BLOCK
5 201
330 200
100 AcDbEntity
8 0
100 AcDbBlockBegin
2 NOTE
70 0
10 0
20 0
30 0
3 NOTE
0 TEXT
5 202
330 200
100 AcDbEntity
8 0
100 AcDbText
10 0
20 0
30 0
40 1
1 text in a block
100 AcDbText
0 ENDBLK
5 203
330 200
100 AcDbEntity
8 0
100 AcDbBlockEnd
)";

constexpr std::string_view kMixedEntities = R"(
0 TEXT
5 101
100 AcDbEntity
8 0
100 AcDbText
10 0
20 0
30 0
40 1
1 single line
100 AcDbText
0 MTEXT
5 102
100 AcDbEntity
8 0
100 AcDbMText
10 0
20 5
30 0
40 1
41 50
71 1
1 multi\Pline
0 ATTDEF
5 103
100 AcDbEntity
8 0
100 AcDbText
10 0
20 10
30 0
40 1
1 default value
100 AcDbAttributeDefinition
3 Enter a value
2 VALUE_TAG
70 0
0 LINE
5 104
100 AcDbEntity
8 0
100 AcDbLine
10 0
20 0
30 0
11 4
21 0
31 0
0 INSERT
5 105
100 AcDbEntity
8 0
100 AcDbBlockReference
66 1
2 NOTE
10 20
20 0
30 0
0 ATTRIB
5 106
330 105
100 AcDbEntity
8 0
100 AcDbText
10 20
20 3
30 0
40 1
1 attribute value
100 AcDbAttribute
2 ATT_TAG
70 0
0 SEQEND
5 107
330 105
100 AcDbEntity
8 0
)";

ScriptRun mixedRun() { return test::tcase::sceneRun({kMixedEntities, {}, kMixedBlockRecords, kMixedBlocks}); }

// The untouched texts of the mixed drawing, by handle.
const std::pair<const char*, const wchar_t*> kMixedOriginals[] = {
    {"101", L"single line"},     {"102", L"multi\\Pline"}, {"103", L"default value"},
    {"106", L"attribute value"}, {"202", L"text in a block"},
};

void expectMixedUnchanged(ScriptRun& run) {
    for (const auto& [handle, text] : kMixedOriginals) EXPECT_EQ(textOf(run, handle), text) << handle;
}

// A string the module printed, without the line breaks around it.
std::wstring printed(uint32_t id) {
    std::wstring text = test::tcase::resourceText(id);
    while (!text.empty() && text.front() == L'\n') text.erase(0, 1);
    while (!text.empty() && text.back() == L'\n') text.pop_back();
    return text;
}

// ALL takes every entity, but only TEXT, MTEXT and ATTDEF change; attributes and block contents stay.
TEST(TcaseCommand, ConvertsTextsMultilineTextsAndAttributeDefinitionsOnly) {
    ScriptRun run = mixedRun();
    ASSERT_TRUE(run.run("TCASE\nALL\n\n@check UPPERCASE\n@press OK\n")) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(printed(2621))) << "the selection prompt";
    EXPECT_EQ(textOf(run, "101"), L"SINGLE LINE");
    EXPECT_EQ(textOf(run, "102"), L"MULTI\\PLINE");
    EXPECT_EQ(textOf(run, "103"), L"DEFAULT VALUE");
    EXPECT_EQ(textOf(run, "106"), L"attribute value") << "attributes of block references are not selectable";
    EXPECT_EQ(textOf(run, "202"), L"text in a block");
    EXPECT_EQ(storedMode(), 'U');
}

// A selection without a text reports 2623, shows no dialog and changes neither the drawing nor the profile.
TEST(TcaseCommand, SelectionsWithoutTextsReportAndChangeNothing) {
    const struct {
        const char* intent;
        const char* script;
    } cases[] = {
        {"a line and a block reference", "TCASE\n(handent \"104\")\n(handent \"105\")\n\n"},
        {"nothing at all", "TCASE\n\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.intent);
        storeMode('T');
        ScriptRun run = mixedRun();
        run.run(c.script);
        EXPECT_TRUE(run.outputContains(printed(2623))) << run.outputUtf8();
        EXPECT_FALSE(run.outputContains(L"TCASE-change text case")) << "no dialog";
        expectMixedUnchanged(run);
        EXPECT_EQ(storedMode(), 'T');
    }
}

// Cancel, the end of the input and a line that is no action all close the dialog without a change.
TEST(TcaseCommand, CancellingChangesNeitherTextsNorProfile) {
    const struct {
        const char* intent;
        const char* actions;
    } cases[] = {
        {"the Cancel button after choosing a mode", "@check UPPERCASE\n@press Cancel\n"},
        {"the end of the input", "@check lowercase\n"},
        {"a line that is no dialog action", "@check Title\nREGEN\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.intent);
        for (const bool stored : {true, false}) {
            if (stored) storeMode('G');
            else forgetMode();
            ScriptRun run = mixedRun();
            run.run(tcaseScript({"101", "102", "103"}, c.actions));
            EXPECT_TRUE(run.outputContains(L"TCASE-change text case: @check")) << run.outputUtf8();
            expectMixedUnchanged(run);
            EXPECT_EQ(storedMode(), stored ? 'G' : -1) << (stored ? "the stored mode stays" : "no mode is stored");
        }
    }
}

// A text on a locked layer cannot be opened for write and is skipped; the others are still converted.
TEST(TcaseCommand, SkipsTextsOnLockedLayers) {
    constexpr std::string_view layers = R"(
0 LAYER
5 300
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 LOCKED
70 4
62 7
6 Continuous
)";
    const std::string entities = test::tcase::textEntity("TEXT", "101", "first text") +
                                 test::tcase::textEntity("TEXT", "102", "locked text", "LOCKED") +
                                 test::tcase::textEntity("MTEXT", "103", "last text");
    ScriptRun run = test::tcase::sceneRun({entities, layers, {}, {}});
    ASSERT_TRUE(run.run(tcaseScript({"101", "102", "103"}, "@check Title\n@press OK\n"))) << run.outputUtf8();
    EXPECT_EQ(textOf(run, "101"), L"First Text");
    EXPECT_EQ(textOf(run, "102"), L"locked text");
    EXPECT_EQ(textOf(run, "103"), L"Last Text");
}

// Multiline texts that hold fields are closed unchanged, while a plain text of the same run is converted.
TEST(TcaseCommand, NeverConvertsTextsWithFields) {
    test::TempDir dir;
    const auto copy = dir.file("fields.dxf");
    std::filesystem::copy_file(test::corpusFile("ezdxf__mtext_complex_inline_codes.dxf"), copy);
    ScriptRun run = test::withExtendModule(ScriptRun::fromFile(copy.string()));
    const char* fieldTexts[] = {"9A", "DA", "E1", "E8", "F4", "FD", "104", "10B"};
    std::vector<std::wstring> before;
    for (const char* handle : fieldTexts) before.push_back(textOf(run, handle));
    const double where[3] = {0.0, -20.0, 0.0};
    resbuf* plainText = kcutBuildList(RTDXF0, L"TEXT", 1, L"plain words", 10, where, 40, 2.0, RTNONE);
    ASSERT_EQ(kcdbEntMake(plainText), RTNORM);
    kcutRelRb(plainText);
    ASSERT_TRUE(run.run("TCASE\nALL\n\n@check UPPERCASE\n@press OK\n")) << run.outputUtf8();
    for (size_t i = 0; i < before.size(); ++i) {
        EXPECT_NE(before[i].find(L"Complex MTEXT content"), std::wstring::npos) << fieldTexts[i];
        EXPECT_TRUE(textOf(run, fieldTexts[i]) == before[i]) << "changed: " << fieldTexts[i];
    }
    kcad_name plain = {0, 0};
    ASSERT_EQ(kcdbEntLast(plain), RTNORM);
    KcDbObjectId plainId;
    ASSERT_EQ(kcdbGetObjectId(plainId, plain), Kcad::eOk);
    EXPECT_EQ(test::tcase::textOf(plainId), L"PLAIN WORDS");
}

}  // namespace
}  // namespace korva
