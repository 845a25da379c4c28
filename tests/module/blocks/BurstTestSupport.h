// Shared pieces of the BURST tests: a script run with the module on a built
// drawing, selection answers by handle, the module's messages as the resource
// library words them, and a guard that puts a profile variable back.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cwchar>
#include <string>
#include <vector>

#include "BlockDrawing.h"
#include "EntityLists.h"
#include "ModuleSession.h"
#include "db/Audit.h"
#include "kced.h"
#include "resources/ExtendResourceTable.h"

namespace korva::test::blocks {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

// Names the cases of a table-driven test after their name member.
struct CaseName {
    template <class Case>
    std::string operator()(const ::testing::TestParamInfo<Case>& param) const {
        return param.param.name;
    }
};

inline ScriptRun burstRun(const BlockDrawing& drawing) {
    return withExtendModule(ScriptRun::fromDxfText(drawing.text()));
}

// Answers to a selection prompt: each entity by its handle, then Enter.
inline std::string picks(const std::vector<std::string>& handles) {
    std::string script;
    for (const std::string& handle : handles) script += "(handent \"" + handle + "\")\n";
    return script + "\n";
}

inline std::string burstOf(const std::vector<std::string>& handles) { return "BURST\n" + picks(handles); }

// A resource text of the block tools with its one number filled in.
inline std::wstring messageWithCount(uint32_t id, int count) {
    const std::wstring format = extendText(id);
    std::vector<wchar_t> buffer(format.size() + 32);
    std::swprintf(buffer.data(), buffer.size(), format.c_str(), count);
    return buffer.data();
}

// Puts an integer system variable back when the test ends, however it ends.
class RestoreVariable {
public:
    explicit RestoreVariable(const wchar_t* name) : m_name(name) { m_read = kcedGetVar(name, &m_value) == RTNORM; }
    ~RestoreVariable() {
        if (m_read) kcedSetVar(m_name, &m_value);
    }
    RestoreVariable(const RestoreVariable&) = delete;
    RestoreVariable& operator=(const RestoreVariable&) = delete;

private:
    const wchar_t* m_name;
    resbuf m_value{};
    bool m_read = false;
};

inline int integerVariable(const wchar_t* name) {
    resbuf value{};
    if (kcedGetVar(name, &value) != RTNORM || value.restype != RTSHORT) return -1;
    return value.resval.rint;
}

inline void expectPoint(const std::optional<std::vector<double>>& actual, std::vector<double> expected,
                        const std::string& what, double tolerance = 1e-9) {
    ASSERT_TRUE(actual.has_value()) << what << ": no such point";
    for (size_t i = 0; i < 3; ++i) EXPECT_NEAR((*actual)[i], expected[i], tolerance) << what << ", coordinate " << i;
}

// The audit finds nothing to repair after the command (no dangling owners or handles).
inline void expectCleanAudit(ScriptRun& run) {
    db::AuditReport report;
    db::auditDrawing(run.drawing(), report);
    EXPECT_TRUE(report.empty()) << (report.empty() ? std::string() : report.repairs().front().message);
}

// The texts of the drawing whose string is value.
inline std::vector<EntityList> textsReading(const std::wstring& value) {
    std::vector<EntityList> found;
    for (EntityList& text : topLevelEntities(L"TEXT")) {
        if (text.text(1) == value) found.push_back(std::move(text));
    }
    return found;
}

}  // namespace korva::test::blocks
