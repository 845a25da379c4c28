// fork + exec with a pipe on the child's standard output.
#include "ChildProcess.h"

#include <sys/wait.h>
#include <unistd.h>

namespace korva::bench {

ChildResult runChild(const std::string& program, const std::vector<std::string>& arguments) {
    ChildResult result;
    int pipeEnds[2];
    if (::pipe(pipeEnds) != 0) return result;

    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    const pid_t pid = ::fork();
    if (pid == 0) {
        ::dup2(pipeEnds[1], STDOUT_FILENO);
        ::close(pipeEnds[0]);
        ::close(pipeEnds[1]);
        ::execv(program.c_str(), argv.data());
        ::_exit(127);
    }
    ::close(pipeEnds[1]);
    if (pid < 0) {
        ::close(pipeEnds[0]);
        return result;
    }
    char buffer[4096];
    ssize_t got = 0;
    while ((got = ::read(pipeEnds[0], buffer, sizeof buffer)) > 0) result.output.append(buffer, static_cast<size_t>(got));
    ::close(pipeEnds[0]);

    int status = 0;
    if (::waitpid(pid, &status, 0) == pid && WIFEXITED(status)) result.exitStatus = WEXITSTATUS(status);
    return result;
}

}  // namespace korva::bench
