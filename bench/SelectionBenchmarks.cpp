// Bodies of the selection benchmarks. The drawing is loaded once, untimed, and
// opened as the current document, as selections work on the current view; the
// spatial index is built before the timed runs (its build time is reported as
// a counter of the window benchmark).
#include "SelectionBenchmarks.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <memory>

#include "db/Drawing.h"
#include "db/RecordFields.h"
#include "db/ResultBuffers.h"
#include "dxf/DxfReader.h"
#include "editor/Document.h"
#include "editor/selection/SpatialIndex.h"
#include "kcdbdatabase.h"
#include "kced.h"

namespace korva::bench {

namespace {

struct LoadedScene {
    std::string path;
    editor::Document* document = nullptr;
    KcGePoint3d windowLow, windowHigh;  // the middle 30% of the drawing's extents on both axes
    KcGePoint3d pickPoint;              // the midpoint of a line
    double indexBuildSeconds = 0.0;
    std::string error;
};

LoadedScene& scene(const std::string& path) {
    static LoadedScene loaded;
    if (loaded.path == path) return loaded;
    editor::Session& session = editor::Session::instance();
    while (!session.documents().empty()) session.close(*session.documents().front());
    editor::SpatialIndex::instance().clear();
    loaded = LoadedScene{};
    loaded.path = path;
    dxf::ReadResult result = dxf::readDxfFile(path);
    if (!result.ok()) {
        loaded.error = result.error;
        return loaded;
    }
    loaded.document = &session.open(std::make_unique<KcDbDatabase>(std::move(result.drawing)), path);
    // A view 100 units high: a pick box of 3 * 100 / 768 units.
    loaded.document->view(false).height = 100.0;
    db::Drawing& drawing = loaded.document->drawing();

    const auto start = std::chrono::steady_clock::now();
    std::vector<editor::IndexedEntity> all;
    editor::SpatialIndex::instance().query(*drawing.modelSpace(), std::nullopt, all);
    loaded.indexBuildSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    geom::Box3d extents;
    for (const editor::IndexedEntity& entry : all) {
        if (entry.bounded) extents.add(entry.box);
        if (entry.entity->type == db::Type::Line && loaded.pickPoint == KcGePoint3d::kOrigin) {
            const KcGePoint3d a = db::fieldPoint(*entry.entity, "AcDbLine", 10);
            const KcGePoint3d b = db::fieldPoint(*entry.entity, "AcDbLine", 11);
            loaded.pickPoint = {(a.x + b.x) / 2, (a.y + b.y) / 2, 0.0};
        }
    }
    const KcGeVector3d span = extents.max() - extents.min();
    loaded.windowLow = extents.min() + span * 0.35;
    loaded.windowHigh = extents.min() + span * 0.65;
    return loaded;
}

bool ready(benchmark::State& state, const LoadedScene& loaded) {
    if (loaded.document) return true;
    state.SkipWithError(loaded.error.c_str());
    return false;
}

void baseline(benchmark::State& state, const std::string& path) {
    LoadedScene& loaded = scene(path);
    if (!ready(state, loaded)) return;
    const db::Drawing& drawing = loaded.document->drawing();
    size_t entities = 0;
    for (auto _ : state) {
        size_t layerBytes = 0;
        entities = 0;
        for (const db::ObjectRecord* entity : drawing.layoutEntities) {
            if (entity->erased) continue;
            layerBytes += db::fieldText(*entity, db::kEntityMarker, 8).size();
            ++entities;
        }
        benchmark::DoNotOptimize(layerBytes);
    }
    state.counters["entities"] = static_cast<double>(entities);
}

// kcedSSGet with a mode, timed with freeing the set; the count of the last run.
template <class Select>
void timedSelection(benchmark::State& state, Select&& select) {
    Kcad::Int32 selected = 0;
    for (auto _ : state) {
        kcad_name set;
        if (select(set) != RTNORM) {
            state.SkipWithError("the selection failed");
            return;
        }
        kcedSSLength(set, &selected);
        kcedSSFree(set);
    }
    state.counters["selected"] = static_cast<double>(selected);
}

void selectX(benchmark::State& state, const std::string& path) {
    if (!ready(state, scene(path))) return;
    db::ResbufChain chain;
    chain.appendText(0, L"LINE");
    chain.appendText(8, L"L1*");
    chain.appendShort(62, 256);
    resbuf* filter = chain.release();
    timedSelection(state, [&](kcad_name set) { return kcedSSGet(L"X", nullptr, nullptr, filter, set); });
    db::releaseResbufs(filter);
}

void selectWindow(benchmark::State& state, const std::string& path) {
    LoadedScene& loaded = scene(path);
    if (!ready(state, loaded)) return;
    const kcad_point low = {loaded.windowLow.x, loaded.windowLow.y, 0.0};
    const kcad_point high = {loaded.windowHigh.x, loaded.windowHigh.y, 0.0};
    timedSelection(state, [&](kcad_name set) { return kcedSSGet(L"W", low, high, nullptr, set); });
    state.counters["index_build_s"] = loaded.indexBuildSeconds;
}

int pickOnce(const LoadedScene& loaded) {
    kcad_name entity;
    kcad_point point = {loaded.pickPoint.x, loaded.pickPoint.y, 0.0};
    kcad_matrix xform;
    resbuf* containers = nullptr;
    const int status = kcedNEntSelP(nullptr, entity, point, 1, xform, &containers);
    db::releaseResbufs(containers);
    return status;
}

void selectPick(benchmark::State& state, const std::string& path) {
    LoadedScene& loaded = scene(path);
    if (!ready(state, loaded)) return;
    // The first pick after a command checks every entity for changes: timed once, apart.
    editor::SpatialIndex::instance().noteChanges();
    const auto start = std::chrono::steady_clock::now();
    const int first = pickOnce(loaded);
    const double firstSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    for (auto _ : state) {
        if (pickOnce(loaded) != RTNORM || first != RTNORM) {
            state.SkipWithError("the pick missed");
            return;
        }
    }
    state.counters["selected"] = 1.0;
    state.counters["first_after_command_ms"] = firstSeconds * 1e3;
}

}  // namespace

void registerSelectionBenchmarks(size_t entities, const std::string& drawingPath) {
    const std::string suffix = "/" + std::to_string(entities);
    using Body = void (*)(benchmark::State&, const std::string&);
    for (auto [name, body] : {std::pair<const char*, Body>{"SelectBaseline", baseline},
                              {"SelectX", selectX},
                              {"SelectWindow", selectWindow},
                              {"SelectPick", selectPick}}) {
        benchmark::RegisterBenchmark((name + suffix).c_str(), body, drawingPath)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    }
}

void printSelectionSummary(const SummaryReporter& reporter, size_t entities) {
    const std::string suffix = "/" + std::to_string(entities);
    const auto base = reporter.find("SelectBaseline" + suffix);
    const auto all = reporter.find("SelectX" + suffix);
    const auto window = reporter.find("SelectWindow" + suffix);
    const auto pick = reporter.find("SelectPick" + suffix);
    // Wall-clock time, and in brackets the CPU time, which a busy machine disturbs less.
    auto ms = [](double seconds) { return seconds * 1e3; };
    std::printf("selection, %zu entities (wall-clock ms, CPU ms in brackets):\n", entities);
    if (base && all) {
        std::printf("  (a) baseline pass reading layers  %9.3f (%9.3f)\n", ms(base->secondsPerIteration),
                    ms(base->cpuSecondsPerIteration));
        std::printf("  (b) X with a 3-item filter        %9.3f (%9.3f) = %.2f (%.2f) x baseline, target at most 3; %.0f selected\n",
                    ms(all->secondsPerIteration), ms(all->cpuSecondsPerIteration),
                    all->secondsPerIteration / base->secondsPerIteration,
                    all->cpuSecondsPerIteration / base->cpuSecondsPerIteration, all->selected);
    }
    if (window && window->selected > 0) {
        const double thousands = window->selected / 1000.0;
        std::printf("  (c) window                        %9.3f (%9.3f) = %.3f (%.3f) ms per 1000 selected, target under 1; "
                    "%.0f selected (%.1f%% of the entities)\n",
                    ms(window->secondsPerIteration), ms(window->cpuSecondsPerIteration),
                    ms(window->secondsPerIteration) / thousands, ms(window->cpuSecondsPerIteration) / thousands,
                    window->selected, 100.0 * window->selected / static_cast<double>(entities));
    }
    if (pick) {
        std::printf("  (d) one pick                      %9.4f (%9.4f) for the one entity it selects, target under 1\n",
                    ms(pick->secondsPerIteration), ms(pick->cpuSecondsPerIteration));
    }
}

void closeSelectionDrawings() {
    // The documents go before the statics of the drawing database do.
    editor::Session& session = editor::Session::instance();
    while (!session.documents().empty()) session.close(*session.documents().front());
    editor::SpatialIndex::instance().clear();
}

}  // namespace korva::bench
