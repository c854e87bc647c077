// SPDX-License-Identifier: MIT
#include "tests/support/ZefProcess.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int longestWait = 60'000;

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

void closeIfOpen(int& descriptor)
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

std::string programPath()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "zef";
}

/// Texts in the form that execve(2) wants.
class Vector {
public:
    explicit Vector(std::vector<std::string> texts)
        : _texts(std::move(texts))
    {
        for (auto& text : _texts)
            _pointers.push_back(text.data());
        _pointers.push_back(nullptr);
    }

    char** pointers() { return _pointers.data(); }

private:
    std::vector<std::string> _texts;
    std::vector<char*> _pointers;
};

std::vector<std::string> commandLine(const std::vector<std::string>& arguments)
{
    std::vector<std::string> result{ programPath() };
    result.insert(result.end(), arguments.begin(), arguments.end());
    return result;
}

std::vector<std::string> environment(const ZefProcess::Settings& settings)
{
    std::vector<std::string> result;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        if (!settings.environment.contains(text.substr(0, text.find('='))))
            result.push_back(text);
    }
    for (const auto& [name, value] : settings.environment) {
        if (value)
            result.push_back(name + '=' + *value);
    }
    return result;
}

/// What the child does between fork(2) and execve(2); nothing here may take memory or a lock.
class Start {
public:
    Start(const std::vector<std::string>& arguments, const ZefProcess::Settings& settings)
        : _arguments(commandLine(arguments))
        , _environment(environment(settings))
        , _settings(settings)
    {
    }

    [[noreturn]] void run()
    {
        ::signal(SIGPIPE, SIG_DFL);
        if (_settings.withoutPrivileges)
            dropPrivileges();
        for (const int descriptor : _settings.closed)
            ::close(descriptor);
        if (_settings.folder.empty() || ::chdir(_settings.folder.c_str()) == 0)
            ::execve(_arguments.pointers()[0], _arguments.pointers(), _environment.pointers());
        ::_exit(127);
    }

private:
    // Whoever has none to drop gets errors, which don't matter.
    static void dropPrivileges()
    {
        constexpr unsigned long last = 63;
        for (unsigned long capability = 0; capability <= last; ++capability)
            ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0);
        __user_cap_header_struct header{ _LINUX_CAPABILITY_VERSION_3, 0 };
        __user_cap_data_struct none[2] = {};
        ::syscall(SYS_capset, &header, none);
    }

    Vector _arguments;
    Vector _environment;
    const ZefProcess::Settings& _settings;
};

} // namespace

class ZefProcess::Pipes {
public:
    Pipes()
    {
        if (::pipe2(_input, O_CLOEXEC) || ::pipe2(_output, O_CLOEXEC) || ::pipe2(_error, O_CLOEXEC))
            fail("pipe2");
    }

    void putInPlace() const
    {
        ::dup2(_input[0], STDIN_FILENO);
        ::dup2(_output[1], STDOUT_FILENO);
        ::dup2(_error[1], STDERR_FILENO);
    }

    void closeReader() { closeIfOpen(_output[0]); }

    void keepOwnEnds(ZefProcess& process)
    {
        closeIfOpen(_input[0]);
        closeIfOpen(_output[1]);
        closeIfOpen(_error[1]);
        process._input = _input[1];
        process._output = _output[0];
        process._error = _error[0];
    }

private:
    int _input[2];
    int _output[2];
    int _error[2];
};

ZefProcess::ZefProcess(const std::vector<std::string>& arguments)
    : ZefProcess(arguments, Settings{})
{
}

ZefProcess::ZefProcess(const std::vector<std::string>& arguments, const Settings& settings)
{
    // A program that ends early must not take the tests with it.
    ::signal(SIGPIPE, SIG_IGN);
    // Whoever runs the tests in the background has these ignored; the child must not, not even for
    // a moment, or a signal that a test sends it at once gets lost.
    auto* const interruptAction = ::signal(SIGINT, SIG_DFL);
    auto* const endAction = ::signal(SIGTERM, SIG_DFL);
    if (settings.streams == Streams::terminal)
        startOnTerminal(arguments, settings);
    else
        startOnPipes(arguments, settings);
    ::signal(SIGINT, interruptAction);
    ::signal(SIGTERM, endAction);
    ::fcntl(_input, F_SETFL, O_NONBLOCK);
}

ZefProcess::~ZefProcess()
{
    if (!_status) {
        ::kill(_process, SIGKILL);
        int status = 0;
        ::waitpid(_process, &status, 0);
    }
    if (_input != _output)
        closeIfOpen(_input);
    closeIfOpen(_output);
    closeIfOpen(_error);
}

ZefProcess::Result ZefProcess::run(
    const std::vector<std::string>& arguments, std::string_view input, const Settings& settings)
{
    ZefProcess process(arguments, settings);
    process.send(input);
    process.closeInput();
    Result result;
    result.output = process.rest();
    result.status = process.status();
    result.errors = process.errorText();
    return result;
}

const ZefProcess::Settings& ZefProcess::noSettings()
{
    static const Settings settings;
    return settings;
}

void ZefProcess::startOnPipes(const std::vector<std::string>& arguments, const Settings& settings)
{
    Start start(arguments, settings);
    Pipes pipes;
    if (settings.nobodyReads)
        pipes.closeReader();
    _process = ::fork();
    if (_process < 0)
        fail("fork");
    if (_process == 0) {
        pipes.putInPlace();
        start.run();
    }
    pipes.keepOwnEnds(*this);
}

void ZefProcess::startOnTerminal(
    const std::vector<std::string>& arguments, const Settings& settings)
{
    Start start(arguments, settings);
    const winsize size{ 40, settings.columns, 0, 0 };
    _process = ::forkpty(&_output, nullptr, nullptr, &size);
    if (_process < 0)
        fail("forkpty");
    if (_process == 0)
        start.run();
    ::fcntl(_output, F_SETFD, FD_CLOEXEC);
    _input = _output;
}

void ZefProcess::send(std::string_view bytes)
{
    while (!bytes.empty())
        pump(bytes);
}

void ZefProcess::sendUntilStuck(std::string_view line)
{
    // Long enough for a program that can get on to do so.
    constexpr int milliseconds = 300;
    for (;;) {
        pollfd watched{ _input, POLLOUT, 0 };
        if (::poll(&watched, 1, milliseconds) == 0)
            return;
        if (::write(_input, line.data(), line.size()) < 0 && errno != EAGAIN)
            fail("write");
    }
}

void ZefProcess::closeInput()
{
    closeIfOpen(_input);
}

void ZefProcess::closeOutput()
{
    closeIfOpen(_output);
}

void ZefProcess::signal(int number) const
{
    ::kill(_process, number);
}

void ZefProcess::standStill() const
{
    signal(SIGSTOP);
    int status = 0;
    if (::waitpid(_process, &status, WUNTRACED) != _process)
        fail("waitpid");
}

void ZefProcess::goOn() const
{
    signal(SIGCONT);
}

std::optional<std::string> ZefProcess::nextLine()
{
    for (;;) {
        if (auto line = takeLine())
            return line;
        if (_output < 0)
            return std::nullopt;
        pump();
    }
}

std::optional<std::string> ZefProcess::lineWith(std::string_view text)
{
    auto line = nextLine();
    while (line && line->find(text) == std::string::npos)
        line = nextLine();
    return line;
}

std::string ZefProcess::rest()
{
    while (_output >= 0)
        pump();
    return std::exchange(_outputText, {});
}

int ZefProcess::status()
{
    while (_output >= 0 || _error >= 0)
        pump();
    if (_status)
        return *_status;
    int status = 0;
    if (::waitpid(_process, &status, 0) != _process)
        fail("waitpid");
    _status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return *_status;
}

std::string ZefProcess::errorText()
{
    status();
    return _errorText;
}

std::optional<std::string> ZefProcess::takeLine()
{
    const auto end = _outputText.find('\n');
    if (end == std::string::npos)
        return std::nullopt;
    auto line = _outputText.substr(0, end);
    _outputText.erase(0, end + 1);
    // A terminal makes two characters of a line end.
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

void ZefProcess::pump(std::string_view& toSend)
{
    pollfd watched[] = { { _output, POLLIN, 0 }, { _error, POLLIN, 0 },
        { toSend.empty() ? -1 : _input, POLLOUT, 0 } };
    const int count = ::poll(watched, std::size(watched), longestWait);
    if (count < 0 && errno != EINTR)
        fail("poll");
    if (count == 0)
        throw std::runtime_error("the zef program does nothing; it wrote: " + _outputText);
    if (watched[0].revents)
        readInto(_outputText, _output);
    if (watched[1].revents)
        readInto(_errorText, _error);
    if (!watched[2].revents)
        return;
    const auto written = ::write(_input, toSend.data(), toSend.size());
    if (written < 0 && errno != EAGAIN)
        fail("write");
    toSend.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
}

void ZefProcess::pump()
{
    std::string_view nothing;
    pump(nothing);
}

// A terminal whose other side is gone yields EIO.
void ZefProcess::readInto(std::string& text, int& descriptor)
{
    char bytes[65536];
    const auto count = ::read(descriptor, bytes, sizeof bytes);
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count > 0) {
        text.append(bytes, static_cast<std::size_t>(count));
        return;
    }
    if (&descriptor == &_output && _input == _output)
        _input = -1;
    closeIfOpen(descriptor);
}
