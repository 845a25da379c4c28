// korva: the console of the headless host. For now it opens a drawing (or a new
// one from the built-in template), reports what it read and saves it.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "db/Drawing.h"
#include "db/DrawingIo.h"
#include "db/SymbolTable.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

namespace {

constexpr int kExitOk = 0;
constexpr int kExitUsage = 2;
constexpr int kExitFile = 3;

void printUsage(std::FILE* to) {
    std::fputs(
        "usage: korva [OPTIONS] [DRAWING]\n"
        "  DRAWING              DXF file to open; without it, a new empty drawing\n"
        "  -o, --save FILE      save the drawing as DXF to FILE (same version as read)\n"
        "      --dxf-version V  AC1009, AC1012, AC1014, AC1015, AC1018, AC1021, AC1024, AC1027 or AC1032\n"
        "      --help           show this help\n",
        to);
}

struct Options {
    std::string input;
    std::string output;
    std::string version;
};

// Parses the command line; returns false (after printing why) on bad usage.
bool parseOptions(int argc, char** argv, Options& options, bool& helpShown) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&](const char* what) -> const char* {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "korva: %s needs %s\n", arg.c_str(), what);
                return nullptr;
            }
            return argv[++i];
        };
        if (arg == "-o" || arg == "--save") {
            const char* v = value("a file name");
            if (!v) return false;
            options.output = v;
        } else if (arg == "--dxf-version") {
            const char* v = value("a version such as AC1032");
            if (!v) return false;
            options.version = v;
            if (!korva::dxf::isWritableVersion(options.version)) {
                std::fprintf(stderr, "korva: unknown DXF version \"%s\"\n", v);
                return false;
            }
        } else if (arg == "--help" || arg == "-h") {
            printUsage(stdout);
            helpShown = true;
            return true;
        } else if (!arg.empty() && arg[0] == '-') {
            std::fprintf(stderr, "korva: unknown option \"%s\"\n", arg.c_str());
            return false;
        } else if (options.input.empty()) {
            options.input = arg;
        } else {
            std::fprintf(stderr, "korva: more than one drawing given (\"%s\")\n", arg.c_str());
            return false;
        }
    }
    return true;
}

size_t liveCount(const std::vector<korva::db::ObjectRecord*>& records) {
    size_t n = 0;
    for (const auto* r : records) n += r->erased ? 0 : 1;
    return n;
}

size_t entityCount(const korva::db::Drawing& d) {
    size_t n = 0;
    for (uint32_t i = 0; i < d.recordCount(); ++i) {
        const auto* r = d.record(i);
        n += (r->isEntity() && !r->erased) ? 1 : 0;
    }
    return n;
}

// Blocks the user defined: every block record but the layouts.
size_t blockCount(const korva::db::Drawing& d) {
    const korva::db::SymbolTable* blocks = d.table("BLOCK_RECORD");
    if (!blocks) return 0;
    size_t n = 0;
    for (const auto* r : blocks->records) n += (!r->erased && !d.isLayoutBlock(r) && r != d.modelSpace()) ? 1 : 0;
    return n;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    bool helpShown = false;
    if (!parseOptions(argc, argv, options, helpShown)) {
        printUsage(stderr);
        return kExitUsage;
    }
    if (helpShown) return kExitOk;

    std::unique_ptr<korva::db::Drawing> drawing;
    size_t repairs = 0;
    if (options.input.empty()) {
        drawing = korva::db::newDrawingFromTemplate();
    } else {
        auto result = korva::dxf::readDxfFile(options.input);
        if (!result.ok()) {
            std::fprintf(stderr, "korva: %s\n", result.error.c_str());
            return kExitFile;
        }
        for (const auto& repair : result.audit.repairs()) std::printf("repaired: %s\n", repair.message.c_str());
        repairs = result.audit.count();
        drawing = std::move(result.drawing);
    }
    const korva::db::SymbolTable* layers = drawing->table("LAYER");
    std::printf("%s: %s%s, %zu entities, %zu layers, %zu blocks, %zu repairs\n",
                options.input.empty() ? "(new drawing)" : options.input.c_str(), drawing->format.version.c_str(),
                drawing->format.binary ? " binary" : "", entityCount(*drawing), layers ? liveCount(layers->records) : 0,
                blockCount(*drawing), repairs);
    if (!options.output.empty()) {
        korva::dxf::WriteOptions write;
        write.version = options.version;
        const std::string error = korva::dxf::saveDxfFile(*drawing, options.output, write);
        if (!error.empty()) {
            std::fprintf(stderr, "korva: %s\n", error.c_str());
            return kExitFile;
        }
        std::printf("saved %s\n", options.output.c_str());
    }
    return kExitOk;
}
