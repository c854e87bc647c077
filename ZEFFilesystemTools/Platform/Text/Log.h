// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <functional>
#include <string>
#include <string_view>

namespace zef {

/// Receives one line without its line end. May be called on any thread, several at once.
using LogSink = std::function<void(std::string_view line)>;

/// Writes one line of any length to the log: `format` as printf(3) has it, control characters
/// escaped (`\n`, `\x1b`) so that a file's name can't break the line or drive a terminal. Never
/// throws and preserves errno. If the sink throws, the line goes to the default sink. Any thread;
/// calls the sink with no lock held.
ZEF_EXPORT void log(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Sends every later line to `sink`; an empty sink gives back the default, which writes
/// `YYYY-MM-DD hh:mm:ss PROGRAM[PID]: line` in local time to standard error. Returns the sink until
/// now, empty for the default. A line that another thread is logging may still reach the old sink
/// after the return. Any thread.
ZEF_EXPORT LogSink setLogSink(LogSink sink);

/// `text`, or "(null)" for null: what the log shows for a null string.
ZEF_EXPORT const char* logText(const char* text);

} // namespace zef
