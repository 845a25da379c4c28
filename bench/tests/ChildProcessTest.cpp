// Helper processes: their output and status come back, and the memory probe
// measures its own load, not the memory of the process that started it.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "ChildProcess.h"
#include "TestFiles.h"

namespace korva::bench {
namespace {

// Standard output and the exit code of the program come back; a missing program is a failure.
TEST(ChildProcess, ReturnsOutputAndExitStatus) {
    const ChildResult echoed = runChild("/bin/sh", {"-c", "printf 'a b\\n'; exit 3"});
    EXPECT_EQ(echoed.output, "a b\n");
    EXPECT_EQ(echoed.exitStatus, 3);
    EXPECT_NE(runChild("/nonexistent/program", {}).exitStatus, 0);
}

// Linux carries the peak resident size across fork and exec; the probe must not report ours.
TEST(LoadMemoryProbe, ReportsItsOwnPeakNotItsParents) {
    constexpr size_t kParentBytes = size_t{256} << 20;
    std::unique_ptr<char[]> ballast(new char[kParentBytes]);
    std::memset(ballast.get(), 1, kParentBytes);  // make it resident

    const ChildResult probe = runChild(KORVA_BENCH_LOAD_MEMORY, {test::corpusFile("ezdxf__3dface.dxf").string()});
    ASSERT_EQ(probe.exitStatus, 0);
    const double peakBytes = std::stod(probe.output) * 1024.0;
    EXPECT_GT(peakBytes, 0.0);
    EXPECT_LT(peakBytes, static_cast<double>(kParentBytes) / 4) << "the probe counted its parent's memory";
    EXPECT_EQ(ballast[kParentBytes - 1], 1);
}

// A file that cannot be read makes the probe fail rather than print a figure.
TEST(LoadMemoryProbe, FailsOnAFileItCannotRead) {
    EXPECT_NE(runChild(KORVA_BENCH_LOAD_MEMORY, {"/nonexistent/drawing.dxf"}).exitStatus, 0);
}

}  // namespace
}  // namespace korva::bench
