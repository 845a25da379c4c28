// Whole-program runs of korva with modules: --load of the probe module and the
// messages it hears, --no-module, the test switches, a module that cannot be
// loaded (exit 2), and --save of the document a script made current.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "RunKorva.h"
#include "TestFiles.h"

namespace korva {
namespace {

using test::runKorva;

const std::string kProbe = KORVA_PROBE_MODULE;

// The probe writes its messages to the file PROBE_LOG names; korva inherits it.
class ProbeLogFile {
public:
    ProbeLogFile() { ::setenv("PROBE_LOG", file().c_str(), 1); }
    ~ProbeLogFile() { ::unsetenv("PROBE_LOG"); }
    std::string file() const { return folder_.file("probe.log").string(); }
    std::vector<std::string> messages() const {
        std::ifstream in(file());
        std::vector<std::string> out;
        for (std::string line; std::getline(in, line);) {
            if (line.starts_with("msg ")) out.push_back(line);
        }
        return out;
    }

private:
    test::TempDir folder_;
};

TEST(ModuleOptions, ALoadedModuleRunsItsCommandsAndHearsTheWholeSession) {
    test::TempDir profile;
    ProbeLogFile log;
    const auto run = runKorva({"--profile", profile.path().string(), "--no-module", "--load", kProbe, "-e",
                               "PROBEHELLO\n(probe_sum 20 22)\n"});
    EXPECT_EQ(run.exitStatus, 0) << run.output;
    EXPECT_NE(run.output.find("Probe says: Hello from the probe"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("\n42\n"), std::string::npos) << run.output;
    EXPECT_EQ(log.messages(), (std::vector<std::string>{"msg 1", "msg 3 Drawing1.dwg", "msg 5 code=0 args=2", "msg 8", "msg 2"}));
}

TEST(ModuleOptions, ModulesThatCannotBeLoadedAreUsageErrors) {
    test::TempDir profile;
    const struct {
        std::vector<std::string> arguments;
        int status;
        const char* says;
    } cases[] = {
        {{"--load", "/no/such/folder/Missing.krx"}, 2, "cannot find the module \"/no/such/folder/Missing.krx\""},
        {{"--load", "Missing.krx"}, 2, "cannot find the module \"Missing.krx\" (searched "},
        {{"--test-switch", "no-uinfo", "--load", kProbe}, 2, "ProbeModule.krx could not be initialized"},
        {{"--test-switch", "no-such-switch"}, 2, "unknown test switch \"no-such-switch\""},
        {{"--test-switch"}, 2, "--test-switch needs a value"},
        {{"--no-module", "--test-switch", "bare-profile", "--test-switch", "long-transaction", "-e", "ORTHOMODE 1"}, 0,
         "Command: ORTHOMODE"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> arguments{"--profile", profile.path().string()};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const auto run = runKorva(arguments);
        EXPECT_EQ(run.exitStatus, c.status) << run.output;
        EXPECT_NE(run.output.find(c.says), std::string::npos) << run.output;
    }
}

TEST(ModuleOptions, HelpListsTheTestSwitches) {
    const auto run = runKorva({"--help"});
    EXPECT_EQ(run.exitStatus, 0);
    const size_t section = run.output.find("Test switches");
    ASSERT_NE(section, std::string::npos) << run.output;
    for (const char* name : {"no-uinfo", "bare-profile", "long-transaction"}) {
        EXPECT_NE(run.output.find(name, section), std::string::npos) << name;
    }
}

TEST(ModuleOptions, SaveWritesTheDocumentTheScriptMadeCurrent) {
    test::TempDir folder;
    const auto second = folder.file("second.dxf");
    std::filesystem::copy_file(test::corpusFile("qcad__examples_flange.dxf"), second);
    const auto saved = folder.file("saved.dxf");
    for (const bool keep : {true, false}) {
        SCOPED_TRACE(keep ? "switched" : "switched back");
        const auto run = runKorva({test::corpusFile("ezdxf__3dface.dxf").string(), "--profile", folder.path().string(),
                                   "--no-module", "--load", kProbe, "-e",
                                   "PROBEOPEN\n" + second.string() + "\n" + (keep ? "Y" : "N") + "\n", "-o", saved.string()});
        EXPECT_EQ(run.exitStatus, 0) << run.output;
        EXPECT_NE(run.output.find("open status 0"), std::string::npos) << "opened in the application context\n" << run.output;
        EXPECT_NE(run.output.find(keep ? "documents 2, current second.dxf" : "documents 2, current ezdxf__3dface.dxf"),
                  std::string::npos)
            << run.output;
        const std::string bytes = test::readFileBytes(saved);
        EXPECT_EQ(bytes.find("3DFACE") == std::string::npos, keep) << "the saved drawing is the current one";
    }
}

}  // namespace
}  // namespace korva
