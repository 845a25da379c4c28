// LISP expressions in real scripts: values answer the waiting prompt or are
// printed at the command prompt; variables are read and set; errors print
// "; error: ..." and cancel the prompt that waited.
#include <gtest/gtest.h>

#include "ScriptRun.h"
#include "TestDrawing.h"
#include "db/EntityNames.h"
#include "editor/CommandStack.h"
#include "editor/Prompts.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace korva {
namespace {

using editor::LispValue;

constexpr const char* kTwoLines =
    "  0\nLINE\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n1.0\n 20\n2.0\n 30\n0.0\n"
    " 11\n4.0\n 21\n6.0\n 31\n0.0\n"
    "  0\nLINE\n  5\nE2\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
    " 11\n1.0\n 21\n1.0\n 31\n0.0\n";

// Commands that ask one question each and keep the answer for the test to read.
class LispScript : public ::testing::Test {
protected:
    void SetUp() override {
        editor::CommandDefinition takeValue;
        takeValue.group = L"LISP_SCRIPT_TESTS";
        takeValue.globalName = takeValue.localName = L"TAKEVALUE";
        takeValue.handler = [this] { answer = editor::readAnswer(L"\nSelect object: "); };
        editor::CommandStack::instance().add(takeValue);
        editor::CommandDefinition takePoint = takeValue;
        takePoint.globalName = takePoint.localName = L"TAKEPOINT";
        takePoint.handler = [this] { pointStatus = kcedGetPoint(nullptr, L"\nPoint: ", point); };
        editor::CommandStack::instance().add(takePoint);
    }
    void TearDown() override { editor::CommandStack::instance().removeGroup(L"LISP_SCRIPT_TESTS"); }

    // The handle of the entity the last TAKEVALUE answer named, or 0.
    db::Handle answeredHandle() const {
        if (answer.kind != editor::InputToken::Kind::Value || answer.value.type != LispValue::Type::EntityName) return 0;
        const db::ObjectRecord* record = db::recordOf(answer.value.name);
        return record ? record->handle : 0;
    }

    editor::InputToken answer;
    int pointStatus = 0;
    kcad_point point = {0, 0, 0};
};

// A script line sets a variable, and reads it back at the command prompt.
TEST_F(LispScript, SetvarAndGetvar) {
    test::ScriptRun run;
    EXPECT_TRUE(run.run("(setvar \"ORTHOMODE\" 1)\n(getvar \"orthomode\")\n(getvar \"NOSUCHVARIABLE\")\n"));
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 1);
    EXPECT_TRUE(run.outputContains(L"\n1\n")) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"\nnil\n")) << run.outputUtf8();
    EXPECT_FALSE(run.outputContains(L"; error"));
}

// A refused value is an error that changes nothing; the script goes on.
TEST_F(LispScript, RefusedSetvarIsAnError) {
    test::ScriptRun run;
    EXPECT_TRUE(run.run("(setvar \"ORTHOMODE\" 7)\n(setvar \"TEXTSIZE\" 3)\n"));
    EXPECT_TRUE(run.outputContains(L"; error: variable setting rejected: \"ORTHOMODE\" 7")) << run.outputUtf8();
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 0);
    EXPECT_DOUBLE_EQ(editor::SystemVariables::instance().real(L"TEXTSIZE"), 3.0) << "an integer sets a real variable";
}

// (handent "E1") answers a prompt with that entity's name; unknown handles give nil.
TEST_F(LispScript, HandentAnswersAPrompt) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kTwoLines));
    EXPECT_TRUE(run.run("TAKEVALUE\n(handent \"e2\")\n"));
    EXPECT_EQ(answeredHandle(), 0xE2u);
    EXPECT_TRUE(run.outputContains(L"Select object: (handent \"e2\")")) << "the expression is echoed as typed";
    EXPECT_TRUE(run.run("TAKEVALUE\n(handent \"FFFF\")\n"));
    EXPECT_TRUE(answer.value.isNil());
    EXPECT_TRUE(run.run("TAKEVALUE\n(handent \"not hex\")\n"));
    EXPECT_TRUE(answer.value.isNil());
}

// entnext walks the drawing from its first entity; entlast is the last one.
TEST_F(LispScript, EntnextAndEntlastWalkTheDrawing) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kTwoLines));
    const struct {
        const char* expression;
        db::Handle handle;
    } cases[] = {
        {"(entnext)", 0xE1},
        {"(entnext (handent \"E1\"))", 0xE2},
        {"(entlast)", 0xE2},
        {"(entnext (entlast))", 0},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(run.run(std::string("TAKEVALUE\n") + c.expression + "\n"));
        EXPECT_EQ(answeredHandle(), c.handle) << c.expression;
    }
}

// entget gives the data list as an association list that the list functions read.
TEST_F(LispScript, EntgetGivesAnAssociationList) {
    test::ScriptRun run = test::ScriptRun::fromDxfText(test::drawingText(kTwoLines));
    EXPECT_TRUE(run.run("(cdr (assoc 0 (entget (handent \"E1\"))))\n"
                        "(assoc 11 (entget (handent \"E1\")))\n"
                        "(entget (handent \"FFFF\"))\n"));
    EXPECT_TRUE(run.outputContains(L"\n\"LINE\"\n")) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"\n(11 4.0 6.0 0.0)\n")) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"; error: bad argument type: lentityp nil")) << run.outputUtf8();
}

// A quoted list of numbers answers a point prompt (in scripts "(" starts LISP, so the quote is written out).
TEST_F(LispScript, NumberListsAnswerPointPrompts) {
    test::ScriptRun run;
    EXPECT_TRUE(run.run("TAKEPOINT\n(quote (3.0 4.0))\n"));
    EXPECT_EQ(pointStatus, RTNORM);
    EXPECT_EQ(KcGePoint3d(point[0], point[1], point[2]), KcGePoint3d(3, 4, 0));
    EXPECT_TRUE(run.run("TAKEPOINT\n(list 1 (+ 1 1) 5)\n"));
    EXPECT_EQ(KcGePoint3d(point[0], point[1], point[2]), KcGePoint3d(1, 2, 5));
}

// An error prints "; error: ..." and cancels the prompt that waited for the value.
TEST_F(LispScript, ErrorsCancelTheWaitingPrompt) {
    test::ScriptRun run;
    EXPECT_TRUE(run.run("TAKEPOINT\n(car 5)\n(setvar \"ORTHOMODE\" 1)\n"));
    EXPECT_EQ(pointStatus, RTCAN);
    EXPECT_TRUE(run.outputContains(L"; error: bad argument type: consp 5")) << run.outputUtf8();
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 1) << "the script goes on after the error";
    EXPECT_TRUE(run.run("TAKEPOINT\n(undefined-function)\n"));
    EXPECT_TRUE(run.outputContains(L"; error: no function definition: UNDEFINED-FUNCTION"));
    EXPECT_EQ(pointStatus, RTCAN);
}

// Quoted lists with dotted pairs print back as they were written; ' works inside expressions.
TEST_F(LispScript, QuotedListsPrintAtTheCommandPrompt) {
    test::ScriptRun run;
    EXPECT_TRUE(run.run("(quote ((0 . \"LINE\") (8 . \"WALLS\") (10 1.0 2.0 0.0)))\n(cdr '(x a b))\n"));
    EXPECT_TRUE(run.outputContains(L"\n((0 . \"LINE\") (8 . \"WALLS\") (10 1.0 2.0 0.0))\n")) << run.outputUtf8();
    EXPECT_TRUE(run.outputContains(L"\n(A B)\n")) << run.outputUtf8();
}

}  // namespace
}  // namespace korva
