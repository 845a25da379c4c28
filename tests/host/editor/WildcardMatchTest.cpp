// The wild-card rules of names in filters and wcmatch: each special character,
// sets and ranges, negation, escapes, alternatives, and case.
#include <gtest/gtest.h>

#include "editor/selection/Wildcard.h"

namespace korva {
namespace {

TEST(Wildcard, EachRuleMatchesWhatItShouldAndNothingElse) {
    const struct {
        const wchar_t* pattern;
        const wchar_t* text;
        bool matches;
    } cases[] = {
        {L"WALL", L"WALL", true},        {L"WALL", L"WALLS", false},     // plain text is whole
        {L"W*", L"WALLS", true},         {L"W*", L"W", true},            // "*" takes any run, also none
        {L"*S", L"WALLS", true},         {L"*S", L"WALL", false},
        {L"A*B*C", L"AxxBxCxxC", true},  {L"A*B*C", L"AxxCxB", false},   // stars backtrack
        {L"W?LL", L"WALL", true},        {L"W?LL", L"WLL", false},       // "?" takes exactly one
        {L"L#", L"L7", true},            {L"L#", L"LA", false},          // "#" a digit
        {L"@1", L"B1", true},            {L"@1", L"11", false},          // "@" a letter
        {L"A.B", L"A-B", true},          {L"A.B", L"A1B", false},        // "." neither letter nor digit
        {L"L[123]", L"L2", true},        {L"L[123]", L"L4", false},      // sets
        {L"L[A-C]X", L"LBX", true},      {L"L[A-C]X", L"LDX", false},    // ranges
        {L"L[~A-C]", L"LD", true},       {L"L[~A-C]", L"LB", false},     // negated sets
        {L"[]A]", L"]", true},           {L"[]A]", L"B", false},         // "]" first in a set is a member
        {L"~WALLS", L"DOORS", true},     {L"~WALLS", L"WALLS", false},   // "~" first negates
        {L"A`*B", L"A*B", true},         {L"A`*B", L"AxB", false},       // "`" escapes
        {L"`#1", L"#1", true},           {L"`#1", L"11", false},
        {L"LINE,ARC", L"ARC", true},     {L"LINE,ARC", L"CIRCLE", false}, // alternatives
        {L"A`,B", L"A,B", true},         {L"A`,B", L"A", false},         // an escaped comma is text
        {L"[,]X", L",X", true},                                           // a comma inside a set is a member
        {L"~A*,B*", L"BX", true},        {L"~A*,B*", L"AX", false},      // negation applies to its alternative
        {L"", L"", true},                {L"", L"A", false},
        {L"*", L"", true},
        {L"L[A-", L"L[A-", true},                                         // an unclosed set is plain text
    };
    for (const auto& c : cases) {
        EXPECT_EQ(editor::wcmatch(c.text, c.pattern, false), c.matches) << "pattern " << c.pattern << " text " << c.text;
    }
}

TEST(Wildcard, CaseMattersOnlyWhenAsked) {
    EXPECT_TRUE(editor::wcmatch(L"walls", L"W*LS", true));
    EXPECT_FALSE(editor::wcmatch(L"walls", L"W*LS", false));
    EXPECT_TRUE(editor::wcmatch(L"lb", L"L[A-C]", true)) << "ranges fold case too";
    EXPECT_FALSE(editor::wcmatch(L"lb", L"L[A-C]", false));
    EXPECT_TRUE(editor::wcmatch(L"a*b", L"A`*B", true)) << "an escaped character folds like any other";
}

}  // namespace
}  // namespace korva
