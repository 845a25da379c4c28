// korva_bench_load_memory FILE: loads one drawing and prints the peak resident
// size of the load in KiB (getrusage ru_maxrss), so that the benchmark's own
// allocations do not count.
//
// Linux carries ru_maxrss across exec: a process forked from the large
// benchmark process starts with the benchmark's peak. The load therefore runs
// in a child forked from this small process, whose figure is read with
// RUSAGE_CHILDREN once it has finished.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "dxf/DxfReader.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: korva_bench_load_memory FILE\n");
        return 2;
    }
    const pid_t loader = ::fork();
    if (loader == 0) {
        const korva::dxf::ReadResult result = korva::dxf::readDxfFile(argv[1]);
        if (!result.ok()) std::fprintf(stderr, "korva_bench_load_memory: %s\n", result.error.c_str());
        ::_exit(result.ok() ? 0 : 1);
    }
    int status = 0;
    if (loader < 0 || ::waitpid(loader, &status, 0) != loader || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        return 1;
    }
    struct rusage usage {};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    std::printf("%ld\n", usage.ru_maxrss);
    return 0;
}
