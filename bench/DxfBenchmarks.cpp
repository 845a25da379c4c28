// Bodies of the baseline, load and save benchmarks. All are timed in wall-clock
// time, since reading and writing files is part of what they measure.
#include "DxfBenchmarks.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>

#include "BaselineScan.h"
#include "BenchDrawings.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

namespace korva::bench {

namespace {

void baseline(benchmark::State& state, const std::string& path) {
    ScanTotals totals;
    for (auto _ : state) {
        const std::string bytes = readWholeFile(path);
        totals = scanDxfPairs(bytes);
        benchmark::DoNotOptimize(totals);
    }
    // A scan that stopped early or skipped values would flatter the reader.
    if (!totals.complete || totals.malformedValues != 0) state.SkipWithError("the baseline scan did not convert every value");
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * fileSize(path)));
    state.counters["pairs"] = static_cast<double>(totals.pairs);
}

void load(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        dxf::ReadResult result = dxf::readDxfFile(path);
        if (!result.ok()) {
            state.SkipWithError(result.error.c_str());
            break;
        }
        // Freeing the drawing is not part of loading it.
        state.PauseTiming();
        result = {};
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * fileSize(path)));
}

// The framework calls a benchmark several times while it settles the iteration
// count; the drawing to save is loaded once per file, untimed.
const db::Drawing* loadedDrawing(const std::string& path, std::string& error) {
    static std::string cachedPath;
    static std::unique_ptr<db::Drawing> cached;
    if (cachedPath != path) {
        cached.reset();
        dxf::ReadResult result = dxf::readDxfFile(path);
        error = result.error;
        cached = std::move(result.drawing);
        cachedPath = path;
    }
    return cached.get();
}

void save(benchmark::State& state, const std::string& path) {
    std::string error;
    const db::Drawing* drawing = loadedDrawing(path, error);
    if (!drawing) {
        state.SkipWithError(error.c_str());
        return;
    }
    const std::string target = path + ".saved.dxf";
    for (auto _ : state) {
        error = dxf::saveDxfFile(*drawing, target);
        if (!error.empty()) {
            state.SkipWithError(error.c_str());
            break;
        }
    }
    if (std::filesystem::exists(target)) {
        state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * fileSize(target)));
        std::filesystem::remove(target);
    }
}

}  // namespace

void registerDxfBenchmarks(size_t entities, const std::string& drawingPath) {
    const std::string suffix = "/" + std::to_string(entities);
    using Body = void (*)(benchmark::State&, const std::string&);
    for (auto [name, body] : {std::pair<const char*, Body>{"Baseline", baseline}, {"Load", load}, {"Save", save}}) {
        benchmark::RegisterBenchmark((name + suffix).c_str(), body, drawingPath)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace korva::bench
