// The selection functions of scripts: ssget with modes, points, point lists and
// filter lists; ssadd; sssetfirst making the pick-first selection.
#include <gtest/gtest.h>

#include <algorithm>

#include "LispTestSupport.h"
#include "ScriptRun.h"
#include "TestDrawing.h"
#include "db/EntityNames.h"
#include "editor/lisp/Lisp.h"
#include "kced.h"

namespace korva {
namespace {

using editor::LispValue;

std::string entity(const char* type, const char* handle, const char* layer, const char* geometry) {
    return std::string("  0\n") + type + "\n  5\n" + handle + "\n330\n1F\n100\nAcDbEntity\n  8\n" + layer + "\n100\n" +
           (std::string(type) == "LINE" ? "AcDbLine" : "AcDbCircle") + "\n" + geometry;
}

// Two lines (one near the origin, one far), a circle on WALLS, inside the default view.
std::string drawing() {
    return test::drawingText(
        entity("LINE", "E1", "0", " 10\n1.0\n 20\n1.0\n 30\n0.0\n 11\n2.0\n 21\n2.0\n 31\n0.0\n") +
            entity("LINE", "E2", "0", " 10\n8.0\n 20\n7.0\n 30\n0.0\n 11\n9.0\n 21\n8.0\n 31\n0.0\n") +
            entity("CIRCLE", "E3", "WALLS", " 10\n3.0\n 20\n6.0\n 30\n0.0\n 40\n0.5\n"),
        "  0\nLAYER\n  5\nA1\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n  2\nWALLS\n 70\n0\n"
        " 62\n7\n  6\nContinuous\n");
}

using Outcome = test::LispOutcome;
using test::evaluate;

// The handles of a selection set's members, sorted.
std::vector<db::Handle> members(const LispValue& set) {
    std::vector<db::Handle> handles;
    Kcad::Int32 length = 0;
    if (set.type != LispValue::Type::SelectionSet || kcedSSLength(set.name, &length) != RTNORM) return handles;
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name name;
        if (kcedSSName(set.name, i, name) == RTNORM) handles.push_back(db::recordOf(name)->handle);
    }
    std::sort(handles.begin(), handles.end());
    return handles;
}

// Each ssget form selects what its mode, points and filter say; nothing selected is nil.
TEST(LispSelection, SsgetForms) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(drawing());
    const struct {
        const wchar_t* source;
        std::vector<db::Handle> expected;  // empty: the value is nil
    } cases[] = {
        {L"(ssget \"X\")", {0xE1, 0xE2, 0xE3}},
        {L"(ssget \"X\" '((0 . \"LINE\")))", {0xE1, 0xE2}},
        {L"(ssget \"_X\" '((-4 . \"<OR\") (0 . \"CIRCLE\") (8 . \"walls\") (-4 . \"OR>\")))", {0xE3}},
        {L"(ssget \"X\" '((-4 . \"<NOT\") (0 . \"LINE\") (-4 . \"NOT>\")))", {0xE3}},
        {L"(ssget \"X\" (list (cons 0 \"LINE\") (cons 8 \"0\")))", {0xE1, 0xE2}},
        {L"(ssget \"X\" '((0 . \"ARC\")))", {}},
        {L"(ssget \"W\" '(0 0) '(5 5))", {0xE1}},
        {L"(ssget \"C\" '(0.0 0.0) '(10.0 6.2))", {0xE1, 0xE3}},  // the circle crosses y = 6.2
        {L"(ssget \"W\" '(0 0) '(10 10) '((0 . \"LINE\")))", {0xE1, 0xE2}},
        {L"(ssget \"WP\" '((0 0) (5 0) (5 5) (0 5)))", {0xE1}},
    };
    for (const auto& c : cases) {
        const Outcome outcome = evaluate(c.source);
        ASSERT_TRUE(outcome.ok) << c.source << ": " << outcome.error;
        if (c.expected.empty()) {
            EXPECT_TRUE(outcome.value.isNil()) << c.source;
        } else {
            EXPECT_EQ(members(outcome.value), c.expected) << c.source;
        }
    }
}

// ssadd makes a set, a set of one entity, and adds to a set without duplicates.
TEST(LispSelection, SsaddBuildsSets) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(drawing());
    const Outcome empty = evaluate(L"(ssadd)");
    ASSERT_EQ(empty.value.type, LispValue::Type::SelectionSet) << empty.error;
    EXPECT_TRUE(members(empty.value).empty());
    const Outcome grown = evaluate(L"(setq s (ssadd (handent \"E1\"))) (ssadd (handent \"E3\") s) (ssadd (handent \"E1\") s)");
    ASSERT_TRUE(grown.ok) << grown.error;
    EXPECT_EQ(members(grown.value), (std::vector<db::Handle>{0xE1, 0xE3}));
    EXPECT_TRUE(evaluate(L"(ssadd (handent \"E2\") (ssadd))").ok);
}

// (sssetfirst nil ss) makes the pick-first selection, (sssetfirst nil) clears it.
TEST(LispSelection, SssetfirstMakesThePickFirstSet) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(drawing());
    EXPECT_TRUE(run.run("(sssetfirst nil (ssget \"X\" '((0 . \"LINE\"))))\n"));
    EXPECT_TRUE(run.outputContains(L"(nil <Selection set: ")) << run.outputUtf8();
    std::vector<db::Handle> picked;
    for (const db::ObjectRecord* record : run.document().pickFirst()) picked.push_back(record->handle);
    std::sort(picked.begin(), picked.end());
    EXPECT_EQ(picked, (std::vector<db::Handle>{0xE1, 0xE2}));
    EXPECT_TRUE(run.run("(sssetfirst nil)\n"));
    EXPECT_TRUE(run.document().pickFirst().empty());
}

// Wrong arguments are errors that name the argument.
TEST(LispSelection, BadArgumentsAreErrors) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(drawing());
    const struct {
        const wchar_t* source;
        const wchar_t* error;
    } cases[] = {
        {L"(ssget \"X\" '((62 . \"red\")))", L"bad DXF item: (62 . \"red\")"},
        {L"(ssget \"X\" 5)", L"bad argument type: listp 5"},
        {L"(ssget \"WP\" '((0 0) \"a\"))", L"bad argument type: point list ((0 0) \"a\")"},
        {L"(ssadd 5)", L"bad argument type: lentityp 5"},
        {L"(ssadd (handent \"E1\") 5)", L"bad argument type: lselsetp 5"},
        {L"(sssetfirst nil 5)", L"bad argument type: lselsetp 5"},
        {L"(sssetfirst)", L"too few arguments"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = evaluate(c.source);
        EXPECT_FALSE(outcome.ok) << c.source;
        EXPECT_EQ(outcome.error, c.error) << c.source;
    }
}

}  // namespace
}  // namespace korva
