// The script reader's token rules and the command prompt: spaces and line ends
// as Enter, empty lines, comments, repeated commands and system variables.
#include <gtest/gtest.h>

#include "ScriptRun.h"
#include "editor/SystemVariables.h"
#include "editor/TextInput.h"

namespace korva {
namespace {

std::vector<std::wstring> tokens(const std::wstring& script, bool allowSpaces = false) {
    editor::TextInput input(script);
    editor::InputRequest request;
    request.allowSpaces = allowSpaces;
    std::vector<std::wstring> out;
    while (true) {
        const editor::InputToken token = input.next(request);
        if (token.kind == editor::InputToken::Kind::EndOfInput) break;
        out.push_back(token.kind == editor::InputToken::Kind::Enter ? L"<enter>" : token.text);
    }
    return out;
}

TEST(ScriptReader, SpacesAndLineEndsEndAnswers) {
    const struct {
        const wchar_t* script;
        bool allowSpaces;
        std::vector<std::wstring> expected;
    } cases[] = {
        {L"LINE 0,0 10,0\n\n", false, {L"LINE", L"0,0", L"10,0", L"<enter>"}},
        {L"LINE  0,0\n", false, {L"LINE", L"<enter>", L"0,0"}},  // a second space is Enter
        {L"; a comment\nCIRCLE\n", false, {L"CIRCLE"}},
        {L"TEXT\r\nhello world\r\n", false, {L"TEXT", L"hello", L"world"}},
        {L"hello world\nnext\n", true, {L"hello world", L"next"}},  // a prompt that takes spaces
        {L"last", false, {L"last"}},                                  // no line end at the end
    };
    for (const auto& c : cases) EXPECT_EQ(tokens(c.script, c.allowSpaces), c.expected) << c.script;
}

TEST(CommandPrompt, VariablesShowAndTakeNewValues) {
    test::ScriptRun run;
    EXPECT_TRUE(run.run("ORTHOMODE\n1\nCVPORT\n2\nUCSNAME\n"));
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 1);
    EXPECT_TRUE(run.outputContains(L"UCSNAME = \"\" (read only)"));
    EXPECT_TRUE(run.run("ORTHOMODE\n7\n"));
    EXPECT_TRUE(run.outputContains(L"Invalid value for ORTHOMODE."));
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 1);
}

TEST(CommandPrompt, AnUnknownCommandStopsTheScript) {
    test::ScriptRun run;
    EXPECT_FALSE(run.run("NOSUCHCOMMAND\nORTHOMODE\n1\n"));
    EXPECT_TRUE(run.outputContains(L"Unknown command \"NOSUCHCOMMAND\""));
    EXPECT_EQ(editor::SystemVariables::instance().integer(L"ORTHOMODE"), 0) << "the rest of the script did not run";
}

}  // namespace
}  // namespace korva
