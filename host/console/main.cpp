// korva: opens a DXF drawing, saves it, and reports what it read.
#include <cstdio>
#include <cstring>
#include <string>

#include "db/Drawing.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

namespace {

void printUsage(std::FILE* to) {
    std::fputs("usage: korva DRAWING.dxf [-o OUT.dxf] [--dxf-version V]\n", to);
}

size_t countEntities(const korva::db::Drawing& d) {
    size_t n = 0;
    for (uint32_t i = 0; i < d.recordCount(); ++i) {
        const auto* r = d.record(i);
        n += (r->isEntity() && !r->erased) ? 1 : 0;
    }
    return n;
}

}  // namespace

int main(int argc, char** argv) {
    std::string input, output, version;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if ((arg == "-o" || arg == "--save") && i + 1 < argc) output = argv[++i];
        else if (arg == "--dxf-version" && i + 1 < argc) version = argv[++i];
        else if (arg == "--help") { printUsage(stdout); return 0; }
        else if (!arg.empty() && arg[0] == '-') { printUsage(stderr); return 2; }
        else input = arg;
    }
    if (input.empty()) { printUsage(stderr); return 2; }
    auto result = korva::dxf::readDxfFile(input);
    if (!result.ok()) {
        std::fprintf(stderr, "korva: %s\n", result.error.c_str());
        return 3;
    }
    for (const auto& repair : result.audit.repairs()) std::printf("audit: %s: %s\n", repair.code.c_str(), repair.message.c_str());
    const auto& d = *result.drawing;
    std::printf("%s: %s, %zu entities, %zu repairs\n", input.c_str(), d.format.version.c_str(), countEntities(d), result.audit.count());
    if (!output.empty()) {
        korva::dxf::WriteOptions options;
        options.version = version;
        std::string error = korva::dxf::saveDxfFile(d, output, options);
        if (!error.empty()) {
            std::fprintf(stderr, "korva: %s\n", error.c_str());
            return 3;
        }
    }
    return 0;
}
