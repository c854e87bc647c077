// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zef {

/// Receives one line without its line end. May be called on any thread, several at once.
using LogSink = std::function<void(std::string_view line)>;

/// Writes one line to the log: `format` as printf(3) has it, control characters escaped so that a
/// file's name can't break the line or drive a terminal. Any thread; calls the sink with no lock
/// held.
void log(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Sends every later line to `sink`; an empty sink gives back the default, which writes the line
/// with the time and the program's name to standard error. Any thread.
void setLogSink(LogSink sink);

/// `text`, or "(null)" for null: what the log shows for nil.
const char* logText(const char* text);

} // namespace zef
