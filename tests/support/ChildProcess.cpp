// SPDX-License-Identifier: MIT
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <sstream>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Result = testing::TestPartResult;

// Sends the failures and skips of a child process to its parent, each as four texts that end with
// a NUL, as soon as it happens: what follows may end the process.
class ResultSender final : public testing::EmptyTestEventListener {
public:
    explicit ResultSender(int pipe)
        : _pipe(pipe)
    {
    }

    void OnTestPartResult(const Result& result) override
    {
        if (result.passed())
            return;
        send(result.skipped() ? "skipped" : "failed");
        send(result.file_name() ? result.file_name() : "");
        send(std::to_string(result.line_number()));
        send(result.message());
    }

private:
    void send(const std::string& text) const
    {
        const auto* next = text.c_str();
        for (auto left = text.size() + 1; left > 0;) {
            const auto count = ::write(_pipe, next, left);
            if (count < 0 && errno != EINTR)
                std::_Exit(EXIT_FAILURE);
            if (count > 0) {
                next += count;
                left -= static_cast<std::size_t>(count);
            }
        }
    }

    int _pipe;
};

[[noreturn]] void workAsChild(const std::function<void()>& work, int pipe)
{
    auto& listeners = testing::UnitTest::GetInstance()->listeners();
    listeners.Release(listeners.default_result_printer()); // the parent prints
    listeners.Append(new ResultSender(pipe));
    try {
        work();
    } catch (const std::exception& exception) {
        ADD_FAILURE() << "the child process threw: " << exception.what();
    } catch (...) {
        ADD_FAILURE() << "the child process threw something";
    }
    ::_exit(EXIT_SUCCESS);
}

std::string readToEnd(int pipe)
{
    std::string text;
    char buffer[4096];
    for (;;) {
        const auto count = ::read(pipe, buffer, sizeof buffer);
        if (count > 0)
            text.append(buffer, static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return text;
    }
}

void repeatResults(const std::string& text)
{
    std::istringstream results(text);
    std::string kind;
    std::string file;
    std::string line;
    std::string message;
    const auto next = [&](std::string& part) {
        return static_cast<bool>(std::getline(results, part, '\0'));
    };
    while (next(kind) && next(file) && next(line) && next(message)) {
        if (kind == "failed")
            ADD_FAILURE_AT(file.c_str(), std::atoi(line.c_str())) << message;
        else
            [&] { GTEST_SKIP() << message; }();
    }
}

void expectSuccess(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "waitpid");
    }
    if (WIFSIGNALED(status))
        ADD_FAILURE() << "signal " << WTERMSIG(status) << " killed the child process";
    else if (WEXITSTATUS(status) != EXIT_SUCCESS)
        ADD_FAILURE() << "the child process exited with status " << WEXITSTATUS(status);
}

} // namespace

void runInChildProcess(const std::function<void()>& work)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe2");
    const auto child = ::fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        ::close(ends[0]);
        workAsChild(work, ends[1]);
    }
    ::close(ends[1]);
    const auto results = readToEnd(ends[0]);
    ::close(ends[0]);
    expectSuccess(child);
    repeatResults(results);
}
