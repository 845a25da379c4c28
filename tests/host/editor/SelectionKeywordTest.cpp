// Keyword selections ("-M:$:K"): a typed keyword calls the installed callback
// with its global form; the callback prompts on its own, and its answer goes
// on selecting, adds entities or shows a message, while the selection made so
// far survives its prompts.
#include <gtest/gtest.h>

#include "SelectionScene.h"
#include "kcdbfuncs.h"

namespace korva {
namespace {

using Handles = std::vector<std::string>;

// What the callback saw and asked for.
struct CallbackLog {
    std::vector<std::wstring> keywords;
    double offset = 0.0;
    std::wstring maskType;
};

CallbackLog* activeLog = nullptr;

resbuf* maskCallback(const wchar_t* keyword) {
    activeLog->keywords.push_back(keyword);
    if (std::wstring(keyword) == L"Offset") {
        kcedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
        kcedGetDist(nullptr, L"\nOffset factor: ", &activeLog->offset);
        return nullptr;  // go on selecting
    }
    wchar_t answer[32] = {};
    kcedInitGet(0, L"Wipeout Solid");
    if (kcedGetKword(L"\nMask type [Wipeout/Solid]: ", answer, 32) == RTNORM) activeLog->maskType = answer;
    // Adds A9 and shows a message.
    db::ResbufChain reply;
    kcad_name a9;
    kcdbHandEnt(L"A9", a9);
    resbuf* name = reply.append(RTENAME);
    name->resval.rlname[0] = a9[0];
    name->resval.rlname[1] = a9[1];
    reply.appendText(RTSTR, L"Mask type kept.");
    return reply.release();
}

void registerMaskCommand(test::ProbeResult& result) {
    static const wchar_t* const prompts[2] = {L"\nSelect texts to mask or [Masktype/Offset]: ", L"\nRemove texts: "};
    test::registerTestCommand(L"MASKSEL", 0, [&result] {
        KcEdSSKwordCallback previous = nullptr;
        kcedSSGetKwordCallbackPtr(&previous);
        kcedSSSetKwordCallbackPtr(&maskCallback);
        kcad_name set;
        result.status = kcedSSGet(L"-M:$:K", prompts, L"Masktype Offset _ Masktype Offset", nullptr, set);
        kcedSSSetKwordCallbackPtr(previous);
        result.handles = test::memberHandles(set);
        if (result.status == RTNORM) kcedSSFree(set);
    });
}

TEST(SelectionKeywords, CallbacksPromptAndTheSelectionSurvives) {
    const struct {
        const char* intent;
        const char* script;
        Handles expected;
        std::vector<std::wstring> keywords;
        double offset;
        const wchar_t* maskType;
        const wchar_t* output;
    } cases[] = {
        {"a keyword whose callback prompts and goes on", "MASKSEL\n1,0\nO\n2.5\n10,1\n\n", {"A1", "A2"}, {L"Offset"}, 2.5,
         L"", L"Offset factor: 2.5"},
        {"a refused answer inside the callback is asked again", "MASKSEL\n1,0\nO\n-1\n3\n\n", {"A1"}, {L"Offset"}, 3.0,
         L"", L"Value must be positive"},
        {"a callback that adds entities and shows a message", "MASKSEL\n1,0\nM\nS\n\n", {"A1", "A9"}, {L"Masktype"}, 0.0,
         L"Solid", L"Mask type kept."},
        {"the global form of a keyword", "MASKSEL\n_Offset\n4\n1,0\n\n", {"A1"}, {L"Offset"}, 4.0, L"", nullptr},
        {"the prompt shows the keywords", "MASKSEL\n1,0\n\n", {"A1"}, {}, 0.0, L"",
         L"Select texts to mask or [Masktype/Offset]: "},
    };
    for (const auto& c : cases) {
        test::ScriptRun run = test::sceneRun();
        test::ProbeResult result;
        CallbackLog log;
        activeLog = &log;
        registerMaskCommand(result);
        run.run(c.script);
        EXPECT_EQ(result.status, RTNORM) << c.intent << "\n" << run.outputUtf8();
        EXPECT_EQ(result.handles, c.expected) << c.intent;
        EXPECT_EQ(log.keywords, c.keywords) << c.intent;
        EXPECT_EQ(log.offset, c.offset) << c.intent;
        EXPECT_EQ(log.maskType, c.maskType) << c.intent;
        if (c.output) {
            EXPECT_TRUE(run.outputContains(c.output)) << c.intent << "\n" << run.outputUtf8();
        }
        activeLog = nullptr;
    }
}

TEST(SelectionKeywords, TheCallbackCanBeReadBackAndRemoved) {
    KcEdSSKwordCallback seen = nullptr;
    ASSERT_EQ(kcedSSSetKwordCallbackPtr(&maskCallback), RTNORM);
    ASSERT_EQ(kcedSSGetKwordCallbackPtr(&seen), RTNORM);
    EXPECT_EQ(seen, &maskCallback);
    kcedSSSetKwordCallbackPtr(nullptr);
    kcedSSGetKwordCallbackPtr(&seen);
    EXPECT_EQ(seen, nullptr);
    EXPECT_EQ(kcedSSGetKwordCallbackPtr(nullptr), RTERROR);
}

}  // namespace
}  // namespace korva
