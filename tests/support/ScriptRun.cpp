// Script runs for tests: the engine is process-wide, so each run resets the
// session, the input queue and the session variables it uses.
#include "ScriptRun.h"

#include <gtest/gtest.h>

#include "db/DrawingIo.h"
#include "db/Utf8.h"
#include "dxf/DxfReader.h"
#include "editor/CommandLine.h"
#include "editor/CommandLoop.h"
#include "editor/InputQueue.h"
#include "editor/SystemVariables.h"
#include "editor/TextInput.h"
#include "runtime/HostStart.h"

namespace korva::test {

void startHostOnce() {
    static const bool started = [] {
        std::string error;
        if (!runtime::startHost(runtime::HostSettings{}, error)) ADD_FAILURE() << "the host does not start: " << error;
        return true;
    }();
    (void)started;
}

ScriptRun::ScriptRun() : ScriptRun(db::newDrawingFromTemplate()) {}

ScriptRun::ScriptRun(std::unique_ptr<db::Drawing> drawing) : output_(std::make_unique<std::wstring>()) {
    startHostOnce();
    editor::Session& session = editor::Session::instance();
    while (!session.documents().empty()) session.close(*session.documents().front());
    editor::SystemVariables::instance().resetSession();
    editor::InputQueue::instance().clear();
    document_ = &session.open(std::make_unique<KcDbDatabase>(std::move(drawing)), "");
    editor::CommandLine::instance().setQuiet(true);
    editor::CommandLine::instance().setCapture(output_.get());
}

ScriptRun ScriptRun::fromDxfText(const std::string& dxf) {
    auto result = dxf::readDxf(dxf);
    if (!result.ok()) ADD_FAILURE() << "the test drawing does not load: " << result.error;
    return ScriptRun(std::move(result.drawing));
}

ScriptRun ScriptRun::fromFile(const std::string& path) {
    auto result = dxf::readDxfFile(path);
    if (!result.ok()) ADD_FAILURE() << "the test drawing does not load: " << result.error;
    ScriptRun run(std::move(result.drawing));
    run.document_->setPath(path);
    return run;
}

ScriptRun::ScriptRun(ScriptRun&& other) noexcept : document_(other.document_), output_(std::move(other.output_)) {
    other.document_ = nullptr;
}

ScriptRun::~ScriptRun() {
    if (!output_) return;
    editor::CommandLine& line = editor::CommandLine::instance();
    if (line.capture() == output_.get()) line.setCapture(nullptr);
    // A later run may have closed this document already: look for it by address only.
    editor::Session& session = editor::Session::instance();
    for (const auto& open : session.documents()) {
        if (open.get() == document_) {
            session.close(*open);
            break;
        }
    }
}

bool ScriptRun::run(std::string_view script) {
    editor::CommandLine::instance().setCapture(output_.get());
    editor::InputQueue::instance().addSource(std::make_unique<editor::TextInput>(db::utf8ToWide(script)));
    return editor::CommandLoop::instance().run();
}

std::string ScriptRun::outputUtf8() const { return db::wideToUtf8(*output_); }

}  // namespace korva::test
