// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Text/StandardError.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <exception>
#include <string>

#include <unistd.h>

namespace zef {
namespace {

std::string linePrefix()
{
    const auto now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    char date[64] = "";
    strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S ", &local);
    return std::string(date) + program_invocation_short_name + '[' + std::to_string(getpid())
        + "]: ";
}

void writeAll(std::string_view text)
{
    while (!text.empty()) {
        const auto written = write(STDERR_FILENO, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace

void writeLineToStandardError(std::string_view line) noexcept
{
    try {
        writeAll(linePrefix().append(line).append("\n"));
    } catch (const std::exception&) {
        writeAll(line); // no memory: the bare line, joined to the next, is better than none
    }
}

} // namespace zef
