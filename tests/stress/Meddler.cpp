// SPDX-License-Identifier: MIT
#include "tests/stress/Meddler.h"

#include "tests/stress/Mischief.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <stdexcept>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

struct Meddler::Request {
    std::uint64_t seed;
    int count;
    bool stopsParent;
};

// Small enough for a pipe to take it whole.
struct Meddler::Answer {
    std::size_t count = 0;
    std::array<std::uint64_t, 128> linkedFiles{};
};

Meddler::Meddler(std::string root)
    : _root(std::move(root))
{
    int requests[2];
    int answers[2];
    if (::pipe(requests) != 0 || ::pipe(answers) != 0)
        throw std::runtime_error("no pipe");
    _process = ::fork();
    if (_process < 0)
        throw std::runtime_error("no process");
    const bool isChild = _process == 0;
    _requests = requests[isChild ? 0 : 1];
    _answers = answers[isChild ? 1 : 0];
    ::close(requests[isChild ? 1 : 0]);
    ::close(answers[isChild ? 0 : 1]);
    if (isChild)
        work();
}

Meddler::~Meddler()
{
    ::close(_requests);
    ::close(_answers);
    ::waitpid(_process, nullptr, 0);
}

void Meddler::begin(std::uint64_t seed, int count)
{
    send({ seed, count, false });
}

void Meddler::doWhileStopped(std::uint64_t seed, int count)
{
    send({ seed, count, true });
    finish();
}

void Meddler::send(const Request& request)
{
    if (::write(_requests, &request, sizeof request) != sizeof request)
        throw std::runtime_error("the meddler is gone");
}

void Meddler::finish()
{
    Answer answer;
    if (::read(_answers, &answer, sizeof answer) != sizeof answer)
        throw std::runtime_error("the meddler is gone");
    _filesWithSeveralNames.insert(
        answer.linkedFiles.data(), answer.linkedFiles.data() + answer.count);
}

void Meddler::work()
{
    Request request{};
    while (::read(_requests, &request, sizeof request) == sizeof request) {
        Mischief mischief(_root, request.seed);
        if (request.stopsParent)
            ::kill(::getppid(), SIGSTOP);
        for (int step = 0; step < request.count; ++step)
            mischief.doSomething();
        if (request.stopsParent)
            ::kill(::getppid(), SIGCONT);
        Answer answer;
        answer.count = std::min(mischief.linkedFiles().size(), answer.linkedFiles.size());
        std::copy_n(mischief.linkedFiles().begin(), answer.count, answer.linkedFiles.begin());
        if (::write(_answers, &answer, sizeof answer) != sizeof answer)
            break;
    }
    ::_exit(0);
}
