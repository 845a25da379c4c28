// korva runs through fork and exec, with its output read from a pipe.
#include "RunKorva.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>

namespace korva::test {

KorvaRun runKorva(const std::vector<std::string>& arguments, const std::string& stdinText) {
    const std::string program = std::string(KORVA_BINARY_DIR) + "/bin/korva";
    int output[2];
    int input[2];
    KorvaRun run;
    if (::pipe(output) != 0 || ::pipe(input) != 0) return run;
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(input[0], STDIN_FILENO);
        ::dup2(output[1], STDOUT_FILENO);
        ::dup2(output[1], STDERR_FILENO);
        ::close(input[1]);
        ::close(output[0]);
        std::vector<char*> argv{const_cast<char*>(program.c_str())};
        for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        ::execv(program.c_str(), argv.data());
        ::_exit(127);
    }
    ::close(input[0]);
    ::close(output[1]);
    if (!stdinText.empty()) {
        const ssize_t written = ::write(input[1], stdinText.data(), stdinText.size());
        (void)written;
    }
    ::close(input[1]);
    std::array<char, 4096> buffer{};
    ssize_t n = 0;
    while ((n = ::read(output[0], buffer.data(), buffer.size())) > 0) run.output.append(buffer.data(), static_cast<size_t>(n));
    ::close(output[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

}  // namespace korva::test
