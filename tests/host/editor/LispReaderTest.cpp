// The LISP reader: literals, quoted data, dotted pairs, comments and the
// messages for malformed text.
#include <gtest/gtest.h>

#include "editor/lisp/LispReader.h"

namespace korva {
namespace {

using editor::LispValue;
using Type = LispValue::Type;

LispValue readOne(const std::wstring& source) {
    std::vector<LispValue> forms;
    std::wstring error;
    EXPECT_TRUE(editor::lisp::readForms(source, forms, error)) << error;
    EXPECT_EQ(forms.size(), 1u) << source;
    return forms.empty() ? LispValue() : forms.front();
}

// Each literal reads as the value of its kind and prints back in the command line's form.
TEST(LispReader, LiteralsReadAsTheirValues) {
    const struct {
        const wchar_t* source;
        Type type;
        const wchar_t* printed;
    } cases[] = {
        {L"12", Type::Integer, L"12"},
        {L"-7", Type::Integer, L"-7"},
        {L"+4", Type::Integer, L"4"},
        {L"1.5", Type::Real, L"1.5"},
        {L"-.25", Type::Real, L"-0.25"},
        {L"2.", Type::Real, L"2.0"},
        {L"1e3", Type::Real, L"1000.0"},
        {L"3000000000", Type::Real, L"3e+09"},  // beyond 32 bits an integer literal is a real
        {L"nil", Type::Nil, L"nil"},
        {L"NIL", Type::Nil, L"nil"},
        {L"()", Type::Nil, L"nil"},
        {L"t", Type::True, L"T"},
        {L"walls", Type::Symbol, L"WALLS"},
        {L"\"text\"", Type::String, L"\"text\""},
        {L"'x", Type::List, L"(QUOTE X)"},
        {L"(0 . \"LINE\")", Type::DottedPair, L"(0 . \"LINE\")"},
        {L"'((0 . \"LINE\") (8 . \"WALLS\"))", Type::List, L"(QUOTE ((0 . \"LINE\") (8 . \"WALLS\")))"},
        {L"(1.0 2.0 (3 . 4.5))", Type::List, L"(1.0 2.0 (3 . 4.5))"},
        {L"( a\n  ; a comment (with parentheses\n b )", Type::List, L"(A B)"},
    };
    for (const auto& c : cases) {
        const LispValue value = readOne(c.source);
        EXPECT_EQ(value.type, c.type) << c.source;
        EXPECT_EQ(value.print(), c.printed) << c.source;
    }
}

// Escapes stand for the characters they name; an unknown escape keeps its character.
TEST(LispReader, StringEscapes) {
    EXPECT_EQ(readOne(LR"("a\"b\\c\nd\te\q")").text, L"a\"b\\c\nd\te" L"q");
    EXPECT_EQ(readOne(LR"x("(not a list)")x").text, L"(not a list)");
}

// A dot inside a number or a symbol is part of it, not a pair's dot.
TEST(LispReader, DotsInsideAtomsAreNotPairs) {
    const LispValue value = readOne(L"(1 .5 a.b)");
    ASSERT_EQ(value.type, Type::List);
    ASSERT_EQ(value.items.size(), 3u);
    EXPECT_EQ(value.items[1].type, Type::Real);
    EXPECT_EQ(value.items[2].text, L"A.B");
}

// Malformed text is refused with the reason, and nothing is read.
TEST(LispReader, MalformedTextIsRefused) {
    const struct {
        const wchar_t* source;
        const wchar_t* error;
    } cases[] = {
        {L"(1 2", L"malformed list on input"},
        {L"\"open", L"malformed string on input"},
        {L")", L"extra right paren on input"},
        {L"(1 2 . 3)", L"a dotted pair needs exactly one item before the dot"},
        {L"(. 3)", L"a dotted pair needs exactly one item before the dot"},
        {L"(1 . 2 3)", L"a dotted pair needs exactly one item after the dot"},
        {L"'", L"malformed list on input"},
    };
    for (const auto& c : cases) {
        std::vector<LispValue> forms;
        std::wstring error;
        EXPECT_FALSE(editor::lisp::readForms(c.source, forms, error)) << c.source;
        EXPECT_EQ(error, c.error) << c.source;
    }
}

// Deep nesting is an error rather than a stack overflow.
TEST(LispReader, DeepNestingIsRefused) {
    const std::wstring source = std::wstring(100000, L'(') + std::wstring(100000, L')');
    std::vector<LispValue> forms;
    std::wstring error;
    EXPECT_FALSE(editor::lisp::readForms(source, forms, error));
    EXPECT_EQ(error, L"the expression is nested too deeply");
}

// Several forms in one text are read in order.
TEST(LispReader, ReadsEveryFormInOrder) {
    std::vector<LispValue> forms;
    std::wstring error;
    ASSERT_TRUE(editor::lisp::readForms(L"(setq a 1) a \"x\"", forms, error));
    ASSERT_EQ(forms.size(), 3u);
    EXPECT_EQ(forms[1].type, Type::Symbol);
    EXPECT_EQ(forms[2].type, Type::String);
}

}  // namespace
}  // namespace korva
