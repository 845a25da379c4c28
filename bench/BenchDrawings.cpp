// Generates missing benchmark drawings with the shared Python generator.
#include "BenchDrawings.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "ChildProcess.h"

namespace korva::bench {

namespace fs = std::filesystem;

std::string benchDrawing(size_t entities) {
    const fs::path folder = KORVA_BENCH_DATA_DIR;
    const fs::path drawing = folder / ("mixed-" + std::to_string(entities) + ".dxf");
    if (fs::exists(drawing)) return drawing.string();

    fs::create_directories(folder);
    // Written beside its final name and renamed, so an interrupted run leaves no half file in the cache.
    const fs::path partial = drawing.string() + ".part";
    std::fprintf(stderr, "generating %s (a million entities take a few minutes)\n", drawing.c_str());
    const ChildResult run = runChild(KORVA_PYTHON3, {KORVA_BENCH_GENERATOR, std::to_string(entities), partial.string()});
    if (run.exitStatus != 0) {
        fs::remove(partial);
        throw std::runtime_error("the drawing generator failed for " + std::to_string(entities) + " entities");
    }
    fs::rename(partial, drawing);
    return drawing.string();
}

size_t fileSize(const std::string& path) { return static_cast<size_t>(fs::file_size(path)); }

}  // namespace korva::bench
