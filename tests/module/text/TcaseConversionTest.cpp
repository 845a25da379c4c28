// TCASE conversions through the real command: one entity per case, picked by
// its handle, the mode chosen in the dialog by a script action, and the text
// read back from the drawing. The cases cover every mode, the deliberate
// asymmetries of sentence and title case, the code pairs of multiline texts
// (and their unprotected arguments), "%%" codes, attribute definitions and
// empty strings.
#include <gtest/gtest.h>

#include "TcaseTestSupport.h"

namespace korva {
namespace {

using test::tcase::textEntity;
using test::tcase::textOf;

struct ConversionCase {
    const char* intent;
    const char* mode;  // the label of the radio button
    const char* type;  // TEXT, MTEXT or ATTDEF
    const char* text;
    const wchar_t* expected;
};

constexpr const char* kSentence = "Sentence case";
constexpr const char* kLower = "lowercase";
constexpr const char* kUpper = "UPPERCASE";
constexpr const char* kTitle = "Title";
constexpr const char* kToggle = "tOGGLE cASE";

const ConversionCase kCases[] = {
    // Sentence case.
    {"a period and a space: the space takes the capital", kSentence, "TEXT", "HELLO. WORLD", L"Hello. world"},
    {"lower-case words after a period and a space stay lower", kSentence, "TEXT", "one. two", L"One. two"},
    {"a period followed directly by a letter capitalises it", kSentence, "TEXT", "one.two", L"One.Two"},
    {"only the last period of a run ends the sentence", kSentence, "TEXT", "A...b", L"A...B"},
    {"question and exclamation marks end no sentence", kSentence, "TEXT", "what? YES! no", L"What? yes! no"},
    {"braces keep the flag and a code argument uses it up", kSentence, "MTEXT", "{\\C1;RED} text. MORE",
     L"{\\C1;red} text. more"},
    {"the letter after a backslash is protected, its argument is not", kSentence, "MTEXT", "\\fArial|B0;HELLO",
     L"\\fArial|b0;hello"},
    {"a backslash at the end is kept", kSentence, "TEXT", "ABC\\", L"Abc\\"},
    {"a TEXT string keeps its code pairs too", kSentence, "TEXT", "X\\PY", L"X\\Py"},
    // Lower case.
    {"a TEXT string is lowered whole, codes and backslashes too", kLower, "TEXT", "MiXeD %%U \\P", L"mixed %%u \\p"},
    {"the paragraph code of an MTEXT survives", kLower, "MTEXT", "ONE\\PTWO", L"one\\Ptwo"},
    {"a font name after \\F is lowered", kLower, "MTEXT", "\\FARIAL|B1;ABC", L"\\Farial|b1;abc"},
    {"a doubled backslash is one pair", kLower, "MTEXT", "A\\\\B", L"a\\\\b"},
    {"an attribute definition's default text", kLower, "ATTDEF", "Default VALUE", L"default value"},
    // Upper case.
    {"a font name after \\f is raised", kUpper, "MTEXT", "\\fArial|b0;abc", L"\\fARIAL|B0;ABC"},
    {"the underline code of a TEXT is raised", kUpper, "TEXT", "%%u under", L"%%U UNDER"},
    {"a TEXT string's backslash codes are raised", kUpper, "TEXT", "a\\pb", L"A\\PB"},
    {"an MTEXT keeps a lower-case code letter", kUpper, "MTEXT", "line\\pnext", L"LINE\\pNEXT"},
    {"stacked text after \\S is raised", kUpper, "MTEXT", "\\Sa/b;x", L"\\SA/B;X"},
    {"an attribute definition is raised", kUpper, "ATTDEF", "value", L"VALUE"},
    {"an empty string stays empty", kUpper, "TEXT", "", L""},
    // Title case.
    {"the paragraph code starts a word", kTitle, "MTEXT", "one\\Ptwo three", L"One\\PTwo Three"},
    {"the lower-case \\p starts no word", kTitle, "MTEXT", "one\\ptwo", L"One\\ptwo"},
    {"apostrophes and hyphens start no word", kTitle, "TEXT", "o'neil-smith", L"O'neil-smith"},
    {"a tab starts no word", kTitle, "TEXT", "hello\tworld", L"Hello\tworld"},
    {"every space starts a word", kTitle, "TEXT", "HELLO  BIG world", L"Hello  Big World"},
    {"a code argument after a brace takes the capital", kTitle, "MTEXT", "{\\C1;red} car", L"{\\C1;red} Car"},
    {"an attribute definition in title case", kTitle, "ATTDEF", "door NUMBER", L"Door Number"},
    // Toggle case.
    {"letters swap, digits stay", kToggle, "TEXT", "Hello World 123", L"hELLO wORLD 123"},
    {"code pairs of an MTEXT stay", kToggle, "MTEXT", "ab\\PCD", L"AB\\Pcd"},
    {"code pairs of a TEXT stay as well", kToggle, "TEXT", "a\\pb", L"A\\pB"},
};

// Each case converts its one entity exactly as expected and nothing else about the text.
TEST(TcaseConversion, EveryModeConvertsItsCases) {
    for (const ConversionCase& c : kCases) {
        SCOPED_TRACE(c.intent);
        const std::string entity = textEntity(c.type, "100", c.text);
        test::ScriptRun run = test::tcase::sceneRun({entity, {}, {}, {}});
        ASSERT_EQ(textOf(run, "100"), db::utf8ToWide(c.text)) << "the drawing holds the text as written";
        ASSERT_TRUE(run.run(test::tcase::tcaseScript({"100"}, std::string("@check ") + c.mode + "\n@press OK\n")))
            << run.outputUtf8();
        EXPECT_EQ(textOf(run, "100"), c.expected);
    }
}

// A second run in the same mode changes nothing more: every mode but toggle is idempotent, and toggle undoes itself.
TEST(TcaseConversion, ToggleTwiceRestoresAndOtherModesSettle) {
    const std::string entities = textEntity("MTEXT", "100", "Mixed {\\C1;Case}. words\\PHere") +
                                 textEntity("TEXT", "101", "Mixed case. words here");
    for (const char* mode : {kSentence, kLower, kUpper, kTitle}) {
        SCOPED_TRACE(mode);
        test::ScriptRun run = test::tcase::sceneRun({entities, {}, {}, {}});
        const std::string script = test::tcase::tcaseScript({"100", "101"}, std::string("@check ") + mode + "\n@press OK\n");
        ASSERT_TRUE(run.run(script)) << run.outputUtf8();
        const std::wstring once[] = {textOf(run, "100"), textOf(run, "101")};
        ASSERT_TRUE(run.run(script)) << run.outputUtf8();
        EXPECT_EQ(textOf(run, "100"), once[0]);
        EXPECT_EQ(textOf(run, "101"), once[1]);
    }
    test::ScriptRun run = test::tcase::sceneRun({entities, {}, {}, {}});
    const std::string toggle = test::tcase::tcaseScript({"100", "101"}, std::string("@check ") + kToggle + "\n@press OK\n");
    ASSERT_TRUE(run.run(toggle)) << run.outputUtf8();
    EXPECT_EQ(textOf(run, "101"), L"mIXED CASE. WORDS HERE");
    ASSERT_TRUE(run.run(toggle)) << run.outputUtf8();
    EXPECT_EQ(textOf(run, "100"), L"Mixed {\\C1;Case}. words\\PHere");
    EXPECT_EQ(textOf(run, "101"), L"Mixed case. words here");
}

}  // namespace
}  // namespace korva
