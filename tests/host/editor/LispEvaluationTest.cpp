// Evaluation of LISP expressions: arithmetic, text, list functions, quoting,
// variables, points, the calls of functions a module defines, and errors.
#include <gtest/gtest.h>

#include "LispTestSupport.h"
#include "ScriptRun.h"
#include "db/ResultBuffers.h"
#include "editor/lisp/Lisp.h"
#include "editor/lisp/LispInterpreter.h"
#include "editor/SystemVariables.h"

namespace korva {
namespace {

using editor::LispValue;
using Type = LispValue::Type;

using Outcome = test::LispOutcome;
using test::evaluate;

// Expressions give the values CAD LISPs give, printed as the command line prints them.
TEST(LispEvaluation, BuiltInFunctionsGiveTheirValues) {
    const struct {
        const wchar_t* source;
        const wchar_t* printed;
    } cases[] = {
        {L"(+ 1 2)", L"3"},
        {L"(+ 1 2.5)", L"3.5"},
        {L"(+)", L"0"},
        {L"(- 10 4 1)", L"5"},
        {L"(- 5)", L"-5"},
        {L"(- 2.5)", L"-2.5"},
        {L"(* 2 3 4)", L"24"},
        {L"(/ 7 2)", L"3"},      // integer division truncates
        {L"(/ -7 2)", L"-3"},
        {L"(/ 7 2.0)", L"3.5"},
        {L"(+ 2147483647 1)", L"-2147483648"},  // 32-bit integers wrap
        {L"(strcat \"Lay\" \"er\" \"\")", L"\"Layer\""},
        {L"(strcat)", L"\"\""},
        {L"(itoa -42)", L"\"-42\""},
        {L"(atof \"2.5mm\")", L"2.5"},
        {L"(atof \"x\")", L"0.0"},
        {L"(atoi \"12abc\")", L"12"},
        {L"(car '(1 2 3))", L"1"},
        {L"(cdr '(1 \"a\" 3))", L"(\"a\" 3)"},
        {L"(cdr '(1))", L"nil"},
        {L"(car nil)", L"nil"},
        {L"(car '(0 . \"LINE\"))", L"0"},
        {L"(cdr '(0 . \"LINE\"))", L"\"LINE\""},
        {L"(cons \"x\" '(2 3))", L"(\"x\" 2 3)"},
        {L"(cons 1 nil)", L"(1)"},
        {L"(cons 0 \"LINE\")", L"(0 . \"LINE\")"},
        {L"(list (cons 10 (cons 1.0 (cons 2.0 nil))))", L"((10 1.0 2.0))"},
        {L"(list \"a\" 'b nil T)", L"(\"a\" B nil T)"},
        {L"(assoc 8 '((0 . \"LINE\") (8 . \"WALLS\")))", L"(8 . \"WALLS\")"},
        {L"(cdr (assoc 10 '((0 . \"LINE\") (10 1.0 2.0 0.0))))", L"(1.0 2.0 0.0)"},
        {L"(assoc 62 '((0 . \"LINE\")))", L"nil"},
        {L"'((0 . \"LINE\") (8 . \"WALLS\"))", L"((0 . \"LINE\") (8 . \"WALLS\"))"},
        {L"(quote (a . 1))", L"(A . 1)"},
        {L"\"plain\"", L"\"plain\""},
        {L"undefined-symbol", L"nil"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = evaluate(c.source);
        ASSERT_TRUE(outcome.ok) << c.source << ": " << outcome.error;
        EXPECT_EQ(outcome.value.print(), c.printed) << c.source;
    }
}

// rtos writes decimals with the given precision; DIMZIN 8 drops trailing zeros.
TEST(LispEvaluation, RtosFollowsPrecisionAndZeroSuppression) {
    test::ScriptRun run;
    const struct {
        int dimzin;
        const wchar_t* source;
        const wchar_t* text;
    } cases[] = {
        {0, L"(rtos 1.5 2 2)", L"1.50"},   {0, L"(rtos 2 2 0)", L"2"},         {0, L"(rtos -0.0001 2 2)", L"0.00"},
        {0, L"(rtos 1.23456)", L"1.2346"},  // LUPREC 4
        {8, L"(rtos 1.5 2 2)", L"1.5"},    {8, L"(rtos 2.0 2 3)", L"2"},       {8, L"(rtos 10.0 2 3)", L"10"},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(editor::SystemVariables::instance().setValue(L"DIMZIN", editor::VarValue::ofInteger(editor::VarType::Short, c.dimzin)), RTNORM);
        const Outcome outcome = evaluate(c.source);
        ASSERT_TRUE(outcome.ok) << c.source << ": " << outcome.error;
        EXPECT_EQ(outcome.value.text, c.text) << c.source << " with DIMZIN " << c.dimzin;
    }
}

// Errors name what was wrong, as the input layer prints them after "; error: ".
TEST(LispEvaluation, ErrorsStateTheirReason) {
    const struct {
        const wchar_t* source;
        const wchar_t* error;
    } cases[] = {
        {L"(nosuchfunction 1)", L"no function definition: NOSUCHFUNCTION"},
        {L"(strcat \"a\" 1)", L"bad argument type: stringp 1"},
        {L"(+ 1 \"2\")", L"bad argument type: numberp: \"2\""},
        {L"(/ 1 0)", L"divide by zero"},
        {L"(/ 1.0 0.0)", L"divide by zero"},
        {L"(car 5)", L"bad argument type: consp 5"},
        {L"(itoa 1.5)", L"bad argument type: fixnump: 1.5"},
        {L"(itoa)", L"too few arguments"},
        {L"(car '(1) '(2))", L"too many arguments"},
        {L"(rtos 1.0 1 2)", L"rtos: only the decimal mode 2 is available"},
        {L"(quote)", L"too few arguments"},
        {L"(setq 1 2)", L"bad argument type: symbolp 1"},
        {L"(1 2)", L"bad function: 1"},
        {L"(+ 1 (nosuch))", L"no function definition: NOSUCH"},  // inner errors stop the whole expression
        {L"(handent 42)", L"bad argument type: stringp 42"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = evaluate(c.source);
        EXPECT_FALSE(outcome.ok) << c.source;
        EXPECT_EQ(outcome.error, c.error) << c.source;
    }
}

// setq keeps values between expressions; several forms give the last value.
TEST(LispEvaluation, SetqKeepsValuesBetweenExpressions) {
    editor::lisp::LispInterpreter::instance().clearVariables();
    ASSERT_TRUE(evaluate(L"(setq width 4 height (* width 2))").ok);
    const Outcome outcome = evaluate(L"(+ width height)");
    ASSERT_TRUE(outcome.ok) << outcome.error;
    EXPECT_EQ(outcome.value.integer, 12);
    EXPECT_EQ(evaluate(L"(setq a 1) (+ a 1)").value.integer, 2);
    editor::lisp::LispInterpreter::instance().clearVariables();
    EXPECT_TRUE(evaluate(L"width").value.isNil());
}

// A final list of two or three numbers is a point, so that it answers point prompts.
TEST(LispEvaluation, NumberListsComeBackAsPoints) {
    const struct {
        const wchar_t* source;
        bool point;
        bool twoD;
    } cases[] = {
        {L"'(1.0 2.0)", true, true},
        {L"(list 1 2 3)", true, false},
        {L"'(1 2 3 4)", false, false},
        {L"'(1 \"a\")", false, false},
        {L"'(1)", false, false},
    };
    for (const auto& c : cases) {
        const Outcome outcome = evaluate(c.source);
        ASSERT_TRUE(outcome.ok) << c.source;
        EXPECT_EQ(outcome.value.type == Type::Point, c.point) << c.source;
        if (c.point) {
            EXPECT_EQ(outcome.value.point2d, c.twoD) << c.source;
        }
    }
    EXPECT_EQ(evaluate(L"(list 1 2.5 -3)").value.point, KcGePoint3d(1, 2.5, -3));
}

// What a module function receives and returns, recorded by a stand-in runtime.
struct RecordingRuntime {
    std::vector<short> types;
    std::vector<std::wstring> texts;
    editor::LispValue answer;

    editor::ExternalLispFunctions functions() {
        editor::ExternalLispFunctions f;
        f.exists = [](std::wstring_view name) { return name == L"MODULE-FN"; };
        f.call = [this](std::wstring_view, const resbuf* arguments, LispValue& result, std::wstring&) {
            for (const resbuf* rb = arguments; rb; rb = rb->rbnext) {
                types.push_back(rb->restype);
                if (rb->restype == RTSTR) texts.push_back(rb->resval.rstring);
            }
            result = answer;
            return true;
        };
        return f;
    }
};

// Module functions get their evaluated arguments as a result-buffer chain.
TEST(LispEvaluation, ModuleFunctionsGetTheirArgumentsAsResultBuffers) {
    RecordingRuntime runtime;
    runtime.answer = LispValue::ofString(L"done");
    editor::setExternalLispFunctions(runtime.functions());
    const Outcome outcome = evaluate(L"(module-fn (+ 1 2) \"a\" '(1.0 2.0) '(0 . \"X\") '(1 (2)) nil T 100000)");
    editor::setExternalLispFunctions({});
    ASSERT_TRUE(outcome.ok) << outcome.error;
    EXPECT_EQ(outcome.value.text, L"done");
    const std::vector<short> expected = {RTSHORT, RTSTR, RTPOINT, RTLB, RTSHORT, RTDOTE, RTSTR, RTLE,
                                         RTLB, RTSHORT, RTLB, RTSHORT, RTLE, RTLE, RTNIL, RTT, RTLONG};
    EXPECT_EQ(runtime.types, expected);
    EXPECT_EQ(runtime.texts, (std::vector<std::wstring>{L"a", L"X"}));
}

// Without a runtime, or for a name it does not know, the call is an unknown function.
TEST(LispEvaluation, UnknownModuleFunctionsAreErrors) {
    RecordingRuntime runtime;
    editor::setExternalLispFunctions(runtime.functions());
    EXPECT_EQ(evaluate(L"(other-fn)").error, L"no function definition: OTHER-FN");
    editor::setExternalLispFunctions({});
    EXPECT_EQ(evaluate(L"(module-fn)").error, L"no function definition: MODULE-FN");
    EXPECT_TRUE(runtime.types.empty());
}

}  // namespace
}  // namespace korva
