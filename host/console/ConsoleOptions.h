// The command-line options of korva.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace korva::console {

struct ConsoleOptions {
    std::string drawing;                // empty: a new drawing
    std::string script;                 // -s
    std::vector<std::string> evals;     // -e, in order
    std::string saveAs;                 // -o
    std::string dxfVersion;             // --dxf-version
    std::string profile;                // --profile
    std::vector<std::string> modules;   // --load
    bool noModule = false;              // --no-module
    std::set<std::string> testSwitches; // --test-switch
    std::string transcript;             // --transcript
    std::string render;                 // --render
    bool quiet = false;                 // -q
    bool help = false;
    bool version = false;
};

// Parses argv; false with the reason when the usage is wrong.
bool parseOptions(int argc, char** argv, ConsoleOptions& options, std::string& error);
// The --help text, ending with the test switches.
const std::string& helpText();

}  // namespace korva::console
