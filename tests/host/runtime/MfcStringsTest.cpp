// CString's members that are not inline: comparison without case, Replace, case
// changes, trimming and Format with wide "%s".
#include <gtest/gtest.h>

#include "kcmfc.h"

namespace {

int sign(int value) { return (value > 0) - (value < 0); }

TEST(MfcStrings, CompareNoCaseOrdersAsLowerCase) {
    struct Case {
        const wchar_t* a;
        const wchar_t* b;
        int expected;
    } cases[] = {
        {L"Layer", L"LAYER", 0},
        {L"abc", L"ABD", -1},
        {L"abcd", L"ABC", 1},
        {L"", L"", 0},
        {L"a", nullptr, 1},
        {L"_", L"A", -1},  // "_" sorts before the lower-case letters, as in its model
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "\"" << c.a << "\" vs \"" << (c.b ? c.b : L"(null)") << "\"");
        EXPECT_EQ(sign(CString(c.a).CompareNoCase(c.b)), c.expected);
    }
}

TEST(MfcStrings, ReplaceCountsAndReplacesWithoutOverlap) {
    struct Case {
        const wchar_t* text;
        const wchar_t* from;
        const wchar_t* to;
        int count;
        const wchar_t* result;
    } cases[] = {
        {L"a\\b\\c", L"\\", L"/", 2, L"a/b/c"},
        {L"aaa", L"aa", L"b", 1, L"ba"},
        {L"abc", L"x", L"y", 0, L"abc"},
        {L"abc", L"", L"y", 0, L"abc"},
        {L"abc", nullptr, L"y", 0, L"abc"},
        {L"abcb", L"b", nullptr, 2, L"ac"},
        {L"ab", L"ab", L"abab", 1, L"abab"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "\"" << c.text << "\"");
        CString text(c.text);
        EXPECT_EQ(text.Replace(c.from, c.to), c.count);
        EXPECT_EQ(text, CString(c.result));
    }
}

TEST(MfcStrings, CaseChangesAndTrimming) {
    CString text(L"Layer 0 Name");
    EXPECT_EQ(text.MakeUpper(), CString(L"LAYER 0 NAME"));
    EXPECT_EQ(text.MakeLower(), CString(L"layer 0 name"));
    struct Case {
        const wchar_t* text;
        const wchar_t* left;
        const wchar_t* right;
        const wchar_t* both;
    } cases[] = {
        {L" \t\r\n x y \v\f", L"x y \v\f", L" \t\r\n x y", L"x y"},
        {L"", L"", L"", L""},
        {L"   ", L"", L"", L""},
        {L"\u00a0x", L"\u00a0x", L"\u00a0x", L"\u00a0x"},  // only the C library's ASCII blanks
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "\"" << c.text << "\"");
        CString left(c.text), right(c.text), both(c.text);
        EXPECT_EQ(left.TrimLeft(), CString(c.left));
        EXPECT_EQ(right.TrimRight(), CString(c.right));
        EXPECT_EQ(both.Trim(), CString(c.both));
    }
}

TEST(MfcStrings, FormatTakesWideStringsForPercentS) {
    CString text;
    text.Format(L"%s has %d layers", L"Plan \u00e9", 12);
    EXPECT_EQ(text, CString(L"Plan \u00e9 has 12 layers"));
    text.Format(L"[%-6s][%5.2f][%c][%%][%ls]", L"ab", 3.14159, L'\u00e9', L"wide");
    EXPECT_EQ(text, CString(L"[ab    ][ 3.14][\u00e9][%][wide]"));
    text.Format(L"%f", 1.0);
    EXPECT_EQ(text, CString(L"1.000000"));
    const std::wstring longText(5000, L'x');
    text.Format(L"<%s>", longText.c_str());
    EXPECT_EQ(text.GetLength(), 5002);
    text.Format(nullptr);
    EXPECT_EQ(text.GetLength(), 5002);  // an unusable format leaves the text alone
}

}  // namespace
