// A console reporter that also remembers each benchmark's time per iteration and
// byte rate, so that the run can end with one table comparing load and save
// with the baseline scan of the same file.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace korva::bench {

struct Measurement {
    double secondsPerIteration = 0.0;
    double cpuSecondsPerIteration = 0.0;
    double bytesPerSecond = 0.0;
    double selected = 0.0;  // the "selected" counter of selection benchmarks
};

class SummaryReporter : public benchmark::ConsoleReporter {
public:
    using ConsoleReporter::ConsoleReporter;

    void ReportRuns(const std::vector<Run>& runs) override;

    // The fastest run of the benchmark registered under `name` (e.g. "Load/10000").
    std::optional<Measurement> find(const std::string& name) const;

private:
    std::map<std::string, Measurement> measurements_;
};

}  // namespace korva::bench
