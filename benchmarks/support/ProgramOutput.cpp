// SPDX-License-Identifier: MIT
#include "benchmarks/support/ProgramOutput.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char* thisProgram = "/proc/self/exe";

pid_t start(std::vector<std::string>& arguments, int output)
{
    std::vector<char*> pointers{ const_cast<char*>(thisProgram) };
    for (auto& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    pid_t child = -1;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    if (::posix_spawn(&child, thisProgram, &actions, nullptr, pointers.data(), environ) != 0)
        child = -1;
    ::posix_spawn_file_actions_destroy(&actions);
    return child;
}

} // namespace

std::string outputOfThisProgram(std::vector<std::string> arguments)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {};
    const pid_t child = start(arguments, ends[1]);
    ::close(ends[1]);
    std::string output;
    char buffer[256];
    for (ssize_t count; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        output.append(buffer, static_cast<std::size_t>(count));
    ::close(ends[0]);
    if (child > 0)
        ::waitpid(child, nullptr, 0);
    return output;
}
