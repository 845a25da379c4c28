// The options of korva and its help text, with the test switches of the host.
#include "console/ConsoleOptions.h"

#include <algorithm>

#include "dxf/DxfWriter.h"
#include "runtime/HostStart.h"

namespace korva::console {

namespace {

std::string testSwitchHelp() {
    std::string text = "Test switches (--test-switch NAME, repeatable; for tests of modules):\n";
    for (const runtime::TestSwitch& known : runtime::knownTestSwitches()) {
        std::string name = known.name;
        name.resize(std::max<size_t>(name.size() + 2, 20), ' ');
        text += "  " + name + known.effect + "\n";
    }
    return text;
}

}  // namespace

const std::string& helpText() {
    static const std::string text = std::string("usage: korva [OPTIONS] [DRAWING]\n"
           "\n"
           "Opens a DXF drawing (or a new one), runs commands from a script, from --eval\n"
           "texts or typed at the command line, and saves the drawing.\n"
           "\n"
           "  DRAWING              DXF file to open (ASCII or binary, AC1009 to AC1032);\n"
           "                       without it, a new metric drawing\n"
           "  -s, --script FILE    run FILE as a script, then exit\n"
           "  -e, --eval TEXT      run TEXT as a script (repeatable; runs after --script)\n"
           "  -o, --save FILE      save the drawing as DXF to FILE after the script\n"
           "                       (in the version it was read in)\n"
           "      --dxf-version V  save as AC1009, AC1012, AC1014, AC1015, AC1018, AC1021,\n"
           "                       AC1024, AC1027 or AC1032\n"
           "      --profile DIR    folder of the user profile (default $XDG_CONFIG_HOME/korva\n"
           "                       or ~/.config/korva)\n"
           "      --load FILE.krx  load a module after the default one (repeatable)\n"
           "      --no-module      do not load the default module (libKvExtend.krx)\n"
           "      --transcript F   write the whole command-line dialogue to F\n"
           "      --render F       draw the drawing into F (.png, .svg or .pdf) after the script\n"
           "  -q, --quiet          do not echo the command line on standard output\n"
           "      --help           show this help\n"
           "      --version        show the version\n"
           "\n"
           "Scripts are read as CAD script files: a space or a line end acts as Enter\n"
           "(only the line end where a prompt takes spaces), an empty line is Enter,\n"
           "lines starting with \";\" are comments, and \"(\" starts a LISP expression\n"
           "such as (handent \"2A\"), (getvar \"CLAYER\") or (ssget \"X\" '((0 . \"LINE\"))).\n"
           "Without a script and with a terminal, korva is an interactive command line.\n"
           "\n"
           "Exit status: 0 the script ran to its end; 1 the script was stopped (an unknown\n"
           "command); 2 bad usage or a module that cannot be loaded; 3 the drawing could\n"
           "not be read or saved.\n"
           "\n") + testSwitchHelp();
    return text;
}

bool parseOptions(int argc, char** argv, ConsoleOptions& options, std::string& error) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&](std::string& into) {
            if (i + 1 >= argc) {
                error = arg + " needs a value";
                return false;
            }
            into = argv[++i];
            return true;
        };
        std::string text;
        if (arg == "-s" || arg == "--script") {
            if (!value(options.script)) return false;
        } else if (arg == "-e" || arg == "--eval") {
            if (!value(text)) return false;
            options.evals.push_back(text);
        } else if (arg == "-o" || arg == "--save") {
            if (!value(options.saveAs)) return false;
        } else if (arg == "--dxf-version") {
            if (!value(options.dxfVersion)) return false;
            if (!dxf::isWritableVersion(options.dxfVersion)) {
                error = "unknown DXF version \"" + options.dxfVersion + "\"";
                return false;
            }
        } else if (arg == "--profile") {
            if (!value(options.profile)) return false;
        } else if (arg == "--load") {
            if (!value(text)) return false;
            options.modules.push_back(text);
        } else if (arg == "--no-module") {
            options.noModule = true;
        } else if (arg == "--test-switch") {
            if (!value(text)) return false;
            if (!runtime::isKnownTestSwitch(text)) {
                error = "unknown test switch \"" + text + "\"";
                return false;
            }
            options.testSwitches.insert(text);
        } else if (arg == "--transcript") {
            if (!value(options.transcript)) return false;
        } else if (arg == "--render") {
            if (!value(options.render)) return false;
        } else if (arg == "-q" || arg == "--quiet") {
            options.quiet = true;
        } else if (arg == "--help" || arg == "-h") {
            options.help = true;
        } else if (arg == "--version") {
            options.version = true;
        } else if (arg.size() > 1 && arg[0] == '-') {
            error = "unknown option \"" + arg + "\"";
            return false;
        } else if (options.drawing.empty()) {
            options.drawing = arg;
        } else {
            error = "more than one drawing given (\"" + arg + "\")";
            return false;
        }
    }
    return true;
}

}  // namespace korva::console
