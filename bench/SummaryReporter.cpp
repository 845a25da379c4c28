// Keeps the fastest repetition of each benchmark for the closing table.
#include "SummaryReporter.h"

namespace korva::bench {

void SummaryReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0) continue;
        Measurement measurement;
        measurement.secondsPerIteration = run.real_accumulated_time / static_cast<double>(run.iterations);
        measurement.cpuSecondsPerIteration = run.cpu_accumulated_time / static_cast<double>(run.iterations);
        if (auto rate = run.counters.find("bytes_per_second"); rate != run.counters.end()) {
            measurement.bytesPerSecond = rate->second.value;  // already divided by the time here
        }
        if (auto selected = run.counters.find("selected"); selected != run.counters.end()) {
            measurement.selected = selected->second.value;
        }
        auto [known, inserted] = measurements_.try_emplace(run.run_name.function_name, measurement);
        if (!inserted && measurement.secondsPerIteration < known->second.secondsPerIteration) {
            known->second = measurement;
        }
    }
    ConsoleReporter::ReportRuns(runs);
}

std::optional<Measurement> SummaryReporter::find(const std::string& name) const {
    auto found = measurements_.find(name);
    if (found == measurements_.end()) return std::nullopt;
    return found->second;
}

}  // namespace korva::bench
