// Running a helper program in its own process: the drawing generator, and the
// memory probe whose peak resident size must not include the benchmark's own
// allocations.
#pragma once

#include <string>
#include <vector>

namespace korva::bench {

struct ChildResult {
    int exitStatus = -1;  // the exit code, or -1 when the program could not run or was killed
    std::string output;   // what it wrote to its standard output
};

// Runs program with arguments (no shell); its standard error passes through.
ChildResult runChild(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace korva::bench
