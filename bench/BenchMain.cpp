// korva_bench: DXF load and save benchmarks on generated drawings of 10k, 100k
// and 1M entities (--sizes N,N,... to choose), ending with a table of the
// rates, their ratio to the baseline scan and the peak memory of a load; then
// the selection benchmarks of each drawing ("X" with a filter against a plain
// pass reading layers, a window, a pick) and their summary lines.
// Other options are Google Benchmark's own (--benchmark_filter, ...).
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "BenchDrawings.h"
#include "ChildProcess.h"
#include "DxfBenchmarks.h"
#include "SelectionBenchmarks.h"
#include "SummaryReporter.h"

namespace {

using korva::bench::Measurement;

// Takes "--sizes A,B" or "--sizes=A,B" out of argv, leaving the rest to the
// framework; throws std::invalid_argument on a list that is not numbers.
std::vector<size_t> takeSizes(int& argc, char** argv) {
    std::vector<size_t> sizes{10000, 100000, 1000000};
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        std::string list;
        if (std::strcmp(argv[i], "--sizes") == 0 && i + 1 < argc) {
            list = argv[++i];
        } else if (std::strncmp(argv[i], "--sizes=", 8) == 0) {
            list = argv[i] + 8;
        } else {
            argv[kept++] = argv[i];
            continue;
        }
        sizes.clear();
        for (size_t start = 0; start <= list.size();) {
            size_t comma = list.find(',', start);
            if (comma == std::string::npos) comma = list.size();
            sizes.push_back(std::stoul(list.substr(start, comma - start)));
            start = comma + 1;
        }
    }
    argc = kept;
    return sizes;
}

// Peak resident size of loading the file in a fresh process, in bytes; 0 when unknown.
double peakLoadMemory(const std::string& path) {
    const korva::bench::ChildResult probe = korva::bench::runChild(KORVA_BENCH_LOAD_MEMORY, {path});
    if (probe.exitStatus != 0) return 0.0;
    return std::stod(probe.output) * 1024.0;  // ru_maxrss is in KiB on Linux
}

void printCell(const std::optional<double>& value, int decimals) {
    if (value) {
        std::printf("%10.*f ", decimals, *value);
    } else {
        std::printf("%10s ", "-");
    }
}

void printSummary(const korva::bench::SummaryReporter& reporter, const std::vector<size_t>& sizes,
                  const std::vector<std::string>& paths) {
    constexpr double kMB = 1e6;
    std::printf("\n%10s %10s %10s %10s %10s %10s %10s %10s %10s\n", "entities", "MB", "base MB/s", "load MB/s",
                "load/base", "save MB/s", "save/base", "peak MB", "peak/file");
    for (size_t i = 0; i < sizes.size(); ++i) {
        const std::string suffix = "/" + std::to_string(sizes[i]);
        const double bytes = static_cast<double>(korva::bench::fileSize(paths[i]));
        const auto baseline = reporter.find("Baseline" + suffix);
        const auto loaded = reporter.find("Load" + suffix);
        const auto saved = reporter.find("Save" + suffix);
        auto rate = [&](const std::optional<Measurement>& m) -> std::optional<double> {
            if (!m) return std::nullopt;
            return m->bytesPerSecond / kMB;
        };
        auto ratio = [&](const std::optional<Measurement>& m) -> std::optional<double> {
            if (!m || !baseline) return std::nullopt;
            return m->secondsPerIteration / baseline->secondsPerIteration;
        };
        const double peak = peakLoadMemory(paths[i]);
        std::printf("%10zu %10.1f ", sizes[i], bytes / kMB);
        printCell(rate(baseline), 1);
        printCell(rate(loaded), 1);
        printCell(ratio(loaded), 2);
        printCell(rate(saved), 1);
        printCell(ratio(saved), 2);
        printCell(peak > 0 ? std::optional<double>(peak / kMB) : std::nullopt, 1);
        printCell(peak > 0 ? std::optional<double>(peak / bytes) : std::nullopt, 2);
        std::printf("\n");
    }
    std::printf("targets: load/base and save/base at most 4; peak/file (peak resident size of a load) at most 3\n");
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<size_t> sizes;
    std::vector<std::string> paths;
    try {
        sizes = takeSizes(argc, argv);
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
        for (size_t entities : sizes) {
            paths.push_back(korva::bench::benchDrawing(entities));
            korva::bench::registerDxfBenchmarks(entities, paths.back());
        }
        for (size_t i = 0; i < sizes.size(); ++i) korva::bench::registerSelectionBenchmarks(sizes[i], paths[i]);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "korva_bench: %s\n", failure.what());
        return 1;
    }

    // Colors only on a terminal; piped output stays plain text.
    korva::bench::SummaryReporter reporter(::isatty(STDOUT_FILENO) ? benchmark::ConsoleReporter::OO_ColorTabular
                                                                    : benchmark::ConsoleReporter::OO_Tabular);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    korva::bench::closeSelectionDrawings();
    printSummary(reporter, sizes, paths);
    for (size_t entities : sizes) korva::bench::printSelectionSummary(reporter, entities);
    return 0;
}
