// The closing table is only as right as the measurements the reporter keeps.
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "SummaryReporter.h"

namespace korva::bench {
namespace {

using BenchmarkRun = benchmark::BenchmarkReporter::Run;

BenchmarkRun makeRun(const std::string& name, int64_t iterations, double seconds, double bytesPerSecond) {
    BenchmarkRun run;
    run.run_name.function_name = name;
    run.iterations = iterations;
    run.real_accumulated_time = seconds;
    run.counters["bytes_per_second"] = benchmark::Counter(bytesPerSecond);
    return run;
}

class SummaryReporterTest : public ::testing::Test {
protected:
    void SetUp() override {
        reporter.SetOutputStream(&console);
        reporter.SetErrorStream(&console);
    }
    std::ostringstream console;
    SummaryReporter reporter{benchmark::ConsoleReporter::OO_None};
};

// Of several repetitions, the fastest per iteration is kept, with its own rate.
TEST_F(SummaryReporterTest, KeepsTheFastestRepetition) {
    reporter.ReportRuns({makeRun("Load/10", 10, 2.0, 5e6)});
    reporter.ReportRuns({makeRun("Load/10", 4, 0.4, 9e6)});
    reporter.ReportRuns({makeRun("Load/10", 5, 1.0, 6e6)});
    const auto kept = reporter.find("Load/10");
    ASSERT_TRUE(kept.has_value());
    EXPECT_DOUBLE_EQ(kept->secondsPerIteration, 0.1);
    EXPECT_DOUBLE_EQ(kept->bytesPerSecond, 9e6);
}

// Aggregates (mean, median, ...) and failed runs never stand in for a measurement.
TEST_F(SummaryReporterTest, IgnoresAggregatesAndFailedRuns) {
    BenchmarkRun aggregate = makeRun("Save/10", 1, 0.001, 1e9);
    aggregate.run_type = BenchmarkRun::RT_Aggregate;
    BenchmarkRun failed = makeRun("Baseline/10", 1, 0.001, 1e9);
    failed.error_occurred = true;
    reporter.ReportRuns({aggregate, failed, makeRun("Save/10", 2, 1.0, 3e6)});
    EXPECT_FALSE(reporter.find("Baseline/10").has_value());
    ASSERT_TRUE(reporter.find("Save/10").has_value());
    EXPECT_DOUBLE_EQ(reporter.find("Save/10")->secondsPerIteration, 0.5);
}

// Benchmarks of other sizes or kinds are kept apart.
TEST_F(SummaryReporterTest, KeepsBenchmarksApartByName) {
    reporter.ReportRuns({makeRun("Load/10", 1, 1.0, 1e6), makeRun("Load/100", 1, 8.0, 2e6)});
    EXPECT_DOUBLE_EQ(reporter.find("Load/10")->secondsPerIteration, 1.0);
    EXPECT_DOUBLE_EQ(reporter.find("Load/100")->secondsPerIteration, 8.0);
    EXPECT_FALSE(reporter.find("Load/1000").has_value());
}

// The selection lines need the CPU time and the count selected of the kept repetition.
TEST_F(SummaryReporterTest, KeepsCpuTimeAndTheSelectedCount) {
    BenchmarkRun slow = makeRun("SelectWindow/10", 2, 2.0, 0.0);
    slow.cpu_accumulated_time = 1.0;
    slow.counters["selected"] = benchmark::Counter(40);
    BenchmarkRun fast = makeRun("SelectWindow/10", 4, 2.0, 0.0);
    fast.cpu_accumulated_time = 0.8;
    fast.counters["selected"] = benchmark::Counter(42);
    reporter.ReportRuns({slow, fast});
    const auto kept = reporter.find("SelectWindow/10");
    ASSERT_TRUE(kept.has_value());
    EXPECT_DOUBLE_EQ(kept->cpuSecondsPerIteration, 0.2);
    EXPECT_DOUBLE_EQ(kept->selected, 42);
}

}  // namespace
}  // namespace korva::bench
