#include "tests/memory/Process.h"

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace test {

pid_t startProcess(const std::function<int()>& work) {
    std::fflush(nullptr);  // or the child might write it again
    const pid_t child = fork();
    if (child == -1) throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) _exit(work());
    return child;
}

int endOfProcess(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) == -1)
        if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "waitpid");
    return status;
}

std::string nameOfEnd(int status) {
    return WIFEXITED(status) ? fmt::format("exit {}", WEXITSTATUS(status)) : fmt::format("signal {}", WTERMSIG(status));
}

}  // namespace test
