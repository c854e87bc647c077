// SPDX-License-Identifier: MIT
#include "benchmarks/support/WalkPeers.h"

#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// An entry itself keeps at most its type.
struct Found {
    fs::directory_entry entry;
    fs::file_status status;
};

double seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

} // namespace

std::size_t peers::standardLibrary(const std::string& path)
{
    std::vector<Found> found;
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(path, ignored))
        found.push_back({ entry, entry.symlink_status(ignored) });
    return found.size();
}

double peers::secondsOfProgram(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    pid_t child = -1;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const int error = ::posix_spawnp(
        &child, arguments[0], &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage{};
    if (error || ::wait4(child, &status, 0, &usage) != child || status != 0)
        return -1;
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}
