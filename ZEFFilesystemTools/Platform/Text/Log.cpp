// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"
#include "ZEFFilesystemTools/Platform/Text/StandardError.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include <cxxabi.h>

namespace zef {
namespace {

class SinkHolder {
public:
    std::shared_ptr<const LogSink> sink()
    {
        std::lock_guard guard(_mutex);
        return _sink;
    }

    std::shared_ptr<const LogSink> exchange(std::shared_ptr<const LogSink> sink)
    {
        std::lock_guard guard(_mutex);
        return std::exchange(_sink, std::move(sink));
    }

private:
    std::mutex _mutex;
    std::shared_ptr<const LogSink> _sink;
};

SinkHolder& sinkHolder()
{
    return immortal<SinkHolder>();
}

bool isControl(unsigned char byte)
{
    return byte < 0x20 || byte == 0x7f;
}

// U+0080 to U+009F in UTF-8; terminals obey them as they obey escape sequences.
bool isHighControl(std::string_view text, std::size_t index)
{
    return text[index] == '\xc2' && index + 1 < text.size()
        && static_cast<unsigned char>(text[index + 1]) >= 0x80
        && static_cast<unsigned char>(text[index + 1]) <= 0x9f;
}

void appendControl(std::string& line, char character)
{
    switch (character) {
    case '\n':
        line += "\\n";
        return;
    case '\r':
        line += "\\r";
        return;
    case '\t':
        line += "\\t";
        return;
    }
    constexpr auto digits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(character);
    line += { '\\', 'x', digits[byte >> 4], digits[byte & 15] };
}

std::string escaped(std::string_view text)
{
    std::string line;
    line.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (isHighControl(text, index)) {
            appendControl(line, text[index]);
            appendControl(line, text[++index]);
            continue;
        }
        if (isControl(static_cast<unsigned char>(text[index])))
            appendControl(line, text[index]);
        else
            line += text[index];
    }
    return line;
}

__attribute__((format(printf, 1, 0))) std::string formatted(const char* format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    char buffer[512];
    const auto length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    std::string text;
    if (length < 0) {
        text = format; // a wide character that can't be written, say: show at least what was meant
    } else if (static_cast<std::size_t>(length) < sizeof buffer) {
        text.assign(buffer, static_cast<std::size_t>(length));
    } else {
        text.resize(static_cast<std::size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}

void send(std::string_view line)
{
    const auto sink = sinkHolder().sink();
    if (!sink)
        return writeLineToStandardError(line);

    try {
        (*sink)(line);
    } catch (const abi::__forced_unwind&) {
        throw; // the thread is being ended; swallowing this would abort the program
    } catch (...) {
        writeLineToStandardError(line);
    }
}

} // namespace

void log(const char* format, ...)
{
    const auto savedError = errno;
    va_list arguments;
    va_start(arguments, format);
    try {
        send(escaped(formatted(format, arguments)));
    } catch (const std::bad_alloc&) {
        writeLineToStandardError(format);
    }
    va_end(arguments);
    errno = savedError;
}

LogSink setLogSink(LogSink sink)
{
    auto next = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
    const auto previous = sinkHolder().exchange(std::move(next));
    return previous ? *previous : LogSink();
}

const char* logText(const char* text)
{
    return text ? text : "(null)";
}

} // namespace zef
