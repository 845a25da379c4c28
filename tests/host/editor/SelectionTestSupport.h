// Helpers of the selection tests: a drawing of known entities written as
// "code value" lines and read by the real reader into a script run, a probe
// command that calls kcedSSGet as a module command would and records what it
// got, result-buffer filters, and the handles of a set's members.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "TestDrawing.h"
#include "UnitTextMeasurer.h"
#include "ScriptRun.h"
#include "db/DrawingIo.h"
#include "db/EntityNames.h"
#include "db/RecordTags.h"
#include "db/ResultBuffers.h"
#include "db/TextMetrics.h"
#include "editor/CommandStack.h"
#include "kced.h"

namespace korva::test {


struct SceneParts {
    std::string_view entities;
    std::string_view layers;        // LAYER records
    std::string_view applications;  // APPID records
    std::string_view blockRecords;  // BLOCK_RECORD records
    std::string_view blocks;        // BLOCK ... ENDBLK definitions
};

// The empty drawing with these records, blocks and entities, all written as "code value" lines.
inline std::string sceneDrawing(const SceneParts& parts) {
    std::string text(db::emptyDrawingTemplate());
    auto insertBeforeEnd = [&](std::string_view table, std::string_view records) {
        if (records.empty()) return;
        const size_t at = text.find(std::string("TABLE\n  2\n") + std::string(table) + "\n");
        text.insert(text.find("  0\nENDTAB", at), dxfLines(records));
    };
    insertBeforeEnd("LAYER", parts.layers);
    insertBeforeEnd("APPID", parts.applications);
    insertBeforeEnd("BLOCK_RECORD", parts.blockRecords);
    const std::string_view blocks = parts.blocks;
    const std::string_view entities = parts.entities;
    if (!blocks.empty()) {
        const size_t section = text.find("  2\nBLOCKS\n");
        text.insert(text.find("  0\nENDSEC", section), dxfLines(blocks));
    }
    const std::string marker = "  2\nENTITIES\n";
    text.insert(text.find(marker) + marker.size(), dxfLines(entities));
    return text;
}

// The empty drawing with these entities only.
inline std::string entitiesDrawing(std::string_view entities) { return sceneDrawing({entities, {}, {}, {}, {}}); }

inline std::string handleOf(const kcad_name name) {
    const db::ObjectRecord* record = db::recordOf(name);
    return record ? db::formatHandle(record->handle) : std::string("?");
}

// The handles of a set's members in order.
inline std::vector<std::string> memberHandles(const kcad_name set) {
    std::vector<std::string> out;
    Kcad::Int32 length = 0;
    if (kcedSSLength(set, &length) != RTNORM) return out;
    for (Kcad::Int32 i = 0; i < length; ++i) {
        kcad_name entity;
        if (kcedSSName(set, i, entity) == RTNORM) out.push_back(handleOf(entity));
    }
    return out;
}

// A filter list owned by the test.
class Filter {
public:
    Filter() = default;
    ~Filter() { db::releaseResbufs(head_); }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;
    Filter& text(int code, std::wstring_view value) {
        chain_.appendText(static_cast<short>(code), value);
        return *this;
    }
    Filter& integer(int code, int value) {
        chain_.appendShort(static_cast<short>(code), value);
        return *this;
    }
    Filter& real(int code, double value) {
        chain_.appendReal(static_cast<short>(code), value);
        return *this;
    }
    Filter& point(int code, const KcGePoint3d& value) {
        chain_.appendPoint(static_cast<short>(code), value);
        return *this;
    }
    Filter& op(std::wstring_view value) { return text(-4, value); }
    Filter& marker(int code) {
        chain_.append(static_cast<short>(code));
        return *this;
    }
    const resbuf* list() {
        if (!head_) head_ = chain_.release();
        return head_;
    }

private:
    db::ResbufChain chain_;
    resbuf* head_ = nullptr;
};

// A command of the test group that runs a body; registered once per name.
inline void registerTestCommand(const std::wstring& name, int32_t flags, std::function<void()> body) {
    editor::CommandDefinition command;
    command.group = L"SELECTION_TESTS_" + name;  // one group per command, so that a test can replace it
    command.globalName = name;
    command.localName = name;
    command.flags = flags;
    command.handler = std::move(body);
    editor::CommandStack::instance().removeGroup(command.group);
    editor::CommandStack::instance().add(std::move(command));
}

}  // namespace korva::test

namespace korva::test {

// What a probe command saw: the status of its kcedSSGet and the set's members.
struct ProbeResult {
    int status = 0;
    std::vector<std::string> handles;
    int calls = 0;
};

// Registers a command that calls kcedSSGet(mode, arg1, arg2, filter) as a module
// command would, records the outcome in `result` and frees the set.
inline void registerProbe(const std::wstring& name, int32_t flags, const wchar_t* mode, const void* arg1,
                          const void* arg2, const resbuf* filter, ProbeResult& result) {
    registerTestCommand(name, flags, [=, &result] {
        kcad_name set = {0, 0};
        result.status = kcedSSGet(mode, arg1, arg2, filter, set);
        result.handles = memberHandles(set);
        ++result.calls;
        if (result.status == RTNORM) kcedSSFree(set);
    });
}

}  // namespace korva::test
