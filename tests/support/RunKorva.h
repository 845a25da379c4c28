// Runs the korva program as a user would, for whole-program tests.
#pragma once

#include <string>
#include <vector>

namespace korva::test {

struct KorvaRun {
    int exitStatus = -1;
    std::string output;  // standard output and standard error together
};

// Runs bin/korva with these arguments (and standard input from stdinText).
KorvaRun runKorva(const std::vector<std::string>& arguments, const std::string& stdinText = {});

}  // namespace korva::test
