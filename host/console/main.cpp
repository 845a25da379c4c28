// korva: the console of the headless host. It starts the host, opens a drawing
// (or a new one), loads the modules, runs commands from a script, --eval texts
// or a terminal, saves the current drawing and unloads the modules.
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include <filesystem>

#include "console/ConsoleOptions.h"
#include "console/InteractiveInput.h"
#include "db/DrawingIo.h"
#include "db/SymbolTable.h"
#include "db/Utf8.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "editor/CommandLine.h"
#include "editor/CommandLoop.h"
#include "editor/Document.h"
#include "editor/InputQueue.h"
#include "editor/TextInput.h"
#include "fonts/LeakSuppressions.h"
#include "render/RenderDrawing.h"
#include "runtime/HostStart.h"
#include "runtime/profile/ProfileStore.h"

namespace {

constexpr int kExitOk = 0;
constexpr int kExitStopped = 1;
constexpr int kExitUsage = 2;
constexpr int kExitFile = 3;

using korva::console::ConsoleOptions;
using korva::editor::CommandLine;

bool readText(const std::string& path, std::wstring& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    text = korva::db::utf8ToWide(bytes.str());
    return true;
}

size_t entityCount(const korva::db::Drawing& d) {
    size_t n = 0;
    for (uint32_t i = 0; i < d.recordCount(); ++i) {
        const auto* r = d.record(i);
        n += (r->isEntity() && !r->erased) ? 1 : 0;
    }
    return n;
}

size_t liveRecords(const korva::db::Drawing& d, const char* table, bool withoutLayouts) {
    const korva::db::SymbolTable* t = d.table(table);
    if (!t) return 0;
    size_t n = 0;
    for (const auto* r : t->records) {
        if (r->erased || (withoutLayouts && (d.isLayoutBlock(r) || r == d.modelSpace()))) continue;
        ++n;
    }
    return n;
}

// Opens the drawing the options name, or a new one; prints the one-line summary.
bool openDrawing(const ConsoleOptions& options) {
    std::unique_ptr<korva::db::Drawing> drawing;
    size_t repairs = 0;
    if (options.drawing.empty()) {
        drawing = korva::db::newDrawingFromTemplate();
    } else {
        auto result = korva::dxf::readDxfFile(options.drawing);
        if (!result.ok()) {
            std::fprintf(stderr, "korva: %s\n", result.error.c_str());
            return false;
        }
        for (const auto& repair : result.audit.repairs()) {
            CommandLine::instance().print(L"Repaired: " + korva::db::utf8ToWide(repair.message) + L"\n");
        }
        repairs = result.audit.count();
        drawing = std::move(result.drawing);
    }
    const korva::db::Drawing& d = *drawing;
    wchar_t summary[512];
    std::swprintf(summary, 512, L"%ls: %s%ls, %zu entities, %zu layers, %zu blocks, %zu repairs\n",
                  options.drawing.empty() ? L"(new drawing)" : korva::db::utf8ToWide(options.drawing).c_str(),
                  d.format.version.c_str(), d.format.binary ? L" binary" : L"", entityCount(d),
                  liveRecords(d, "LAYER", false), liveRecords(d, "BLOCK_RECORD", true), repairs);
    CommandLine::instance().print(summary);
    korva::editor::Session::instance().open(std::make_unique<KcDbDatabase>(std::move(drawing)), options.drawing);
    return true;
}

bool queueInput(const ConsoleOptions& options) {
    auto& queue = korva::editor::InputQueue::instance();
    if (!options.script.empty()) {
        std::wstring text;
        if (!readText(options.script, text)) {
            std::fprintf(stderr, "korva: cannot read the script \"%s\"\n", options.script.c_str());
            return false;
        }
        queue.addSource(std::make_unique<korva::editor::TextInput>(std::move(text)));
    }
    for (const std::string& eval : options.evals) {
        queue.addSource(std::make_unique<korva::editor::TextInput>(korva::db::utf8ToWide(eval) + L"\n"));
    }
    if (options.script.empty() && options.evals.empty() && ::isatty(STDIN_FILENO)) {
        queue.addSource(korva::console::terminalInput());
    }
    return true;
}

bool saveDrawing(const ConsoleOptions& options) {
    korva::editor::Document* document = korva::editor::Session::instance().current();
    if (!document) return true;
    korva::dxf::WriteOptions write;
    write.version = options.dxfVersion;
    korva::dxf::ConversionLosses losses;
    const std::string error = korva::dxf::saveDxfFile(document->drawing(), options.saveAs, write, &losses);
    if (!error.empty()) {
        std::fprintf(stderr, "korva: %s\n", error.c_str());
        return false;
    }
    if (losses.total() > 0) {
        CommandLine::instance().print(L"Saved without what " + korva::db::utf8ToWide(options.dxfVersion) +
                                      L" cannot hold: " + korva::db::utf8ToWide(losses.describe()) + L"\n");
    }
    CommandLine::instance().print(L"Saved " + korva::db::utf8ToWide(options.saveAs) + L"\n");
    return true;
}

// Draws the current drawing into the --render file.
bool renderPicture(const ConsoleOptions& options) {
    korva::editor::Document* document = korva::editor::Session::instance().current();
    if (!document) return true;
    std::string error;
    if (!korva::render::renderDrawing(document->drawing(), options.render, korva::render::RenderOptions{}, error)) {
        std::fprintf(stderr, "korva: %s\n", error.c_str());
        return false;
    }
    CommandLine::instance().print(L"Drawn " + korva::db::utf8ToWide(options.render) + L"\n");
    return true;
}

// The host's settings from the options. A --load name that exists as given is
// passed as an absolute path; other names are searched in the module folders.
korva::runtime::HostSettings hostSettings(const ConsoleOptions& options) {
    korva::runtime::HostSettings settings;
    settings.profileFolder = options.profile.empty() ? korva::runtime::defaultProfileFolder() : options.profile;
    settings.defaultModule = !options.noModule;
    settings.testSwitches = options.testSwitches;
    for (const std::string& module : options.modules) {
        std::error_code ignored;
        const bool here = std::filesystem::is_regular_file(module, ignored);
        settings.modules.push_back(here ? std::filesystem::absolute(module, ignored).string() : module);
    }
    return settings;
}

// Runs the session once the host is started; the exit status.
int runSession(const ConsoleOptions& options, const korva::runtime::HostSettings& settings) {
    if (!queueInput(options)) return kExitUsage;
    if (!openDrawing(options)) return kExitFile;
    std::string error;
    if (!korva::runtime::loadStartupModules(settings, error)) {
        std::fprintf(stderr, "korva: %s\n", error.c_str());
        return kExitUsage;
    }
    const bool completed = korva::editor::CommandLoop::instance().run();
    if (!options.saveAs.empty() && !saveDrawing(options)) return kExitFile;
    if (!options.render.empty() && !renderPicture(options)) return kExitFile;
    return completed ? kExitOk : kExitStopped;
}

}  // namespace

int main(int argc, char** argv) {
    ConsoleOptions options;
    std::string error;
    if (!korva::console::parseOptions(argc, argv, options, error)) {
        std::fprintf(stderr, "korva: %s\n\n%s", error.c_str(), korva::console::helpText().c_str());
        return kExitUsage;
    }
    if (options.help) {
        std::fputs(korva::console::helpText().c_str(), stdout);
        return kExitOk;
    }
    if (options.version) {
        std::puts("korva 0.1.0");
        return kExitOk;
    }
    CommandLine& line = CommandLine::instance();
    line.setQuiet(options.quiet);
    if (!options.transcript.empty() && !line.openTranscript(options.transcript)) {
        std::fprintf(stderr, "korva: cannot write the transcript \"%s\"\n", options.transcript.c_str());
        return kExitUsage;
    }
    const korva::runtime::HostSettings settings = hostSettings(options);
    if (!korva::runtime::startHost(settings, error)) {
        std::fprintf(stderr, "korva: %s\n", error.c_str());
        return kExitUsage;
    }
    const int status = runSession(options, settings);
    korva::runtime::stopHost();
    line.closeTranscript();
    return status;
}
