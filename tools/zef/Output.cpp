// SPDX-License-Identifier: MIT
#include "tools/zef/Output.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/Interruption.h"
#include "tools/zef/Text.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tool {
namespace {

// A pipe that is writable takes this much without waiting (PIPE_BUF, pipe(7)).
constexpr std::size_t largestPiece = 4096;

} // namespace

// Never destroyed: threads of the library may log until the end.
Output& Output::standardOutput()
{
    static auto& output = *new Output(STDOUT_FILENO);
    return output;
}

Output& Output::standardError()
{
    static auto& output = *new Output(STDERR_FILENO);
    return output;
}

bool Output::write(std::string_view text)
{
    const std::lock_guard lock(_mutex);
    while (!text.empty() && !_error) {
        if (!waitUntilWritable())
            return false;
        const auto piece = text.substr(0, largestPiece);
        const auto written = ::write(_descriptor, piece.data(), piece.size());
        if (written >= 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR && errno != EAGAIN)
            _error = errno;
    }
    return !_error;
}

// Returns false if the program is to end and the text can't be written right now.
bool Output::waitUntilWritable() const
{
    for (;;) {
        const bool mustEnd = Interruption::signal();
        pollfd watched[] = { { _descriptor, POLLOUT, 0 },
            { mustEnd ? -1 : Interruption::descriptor(), POLLIN, 0 } };
        poll(watched, 2, mustEnd ? 0 : -1);
        if (watched[0].revents)
            return true;
        if (mustEnd)
            return false;
    }
}

void Output::setClosed()
{
    int none = 0;
    _error.compare_exchange_strong(none, EPIPE);
}

bool Output::isTerminal() const
{
    return isatty(_descriptor);
}

bool Output::showsColors() const
{
    const char* terminal = std::getenv("TERM");
    return isTerminal() && !std::getenv("NO_COLOR") && terminal
        && std::strcmp(terminal, "dumb") != 0;
}

void occupyStandardDescriptors()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // The lowest free number is given out first, and all lower ones are taken. Opened the wrong
        // way round, so that using it fails.
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

void complain(std::string_view message)
{
    Output::standardError().write("zef: " + textForTerminal(message) + "\n");
}

void complain(std::string_view path, std::string_view reason)
{
    complain(std::string(path) + ": " + std::string(reason));
}

int statusOfOutput()
{
    const int error = Output::standardOutput().error();
    if (!error || error == EPIPE)
        return ExitStatus::done;
    complain("standard output", std::strerror(error));
    return ExitStatus::failed;
}

} // namespace tool
