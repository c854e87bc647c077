// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Replaces the log's sink while it lives, and keeps the lines. They may come from any thread.
class LogRecorder {
public:
    LogRecorder()
        : _previous(zef::setLogSink([record = _record](std::string_view line) {
            std::lock_guard guard(record->mutex);
            record->lines.emplace_back(line);
        }))
    {
    }

    ~LogRecorder() { zef::setLogSink(std::move(_previous)); }
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    std::vector<std::string> lines() const
    {
        std::lock_guard guard(_record->mutex);
        return _record->lines;
    }

    /// Whether some line contains `text`.
    bool contains(std::string_view text) const { return count(text) > 0; }

    /// The number of lines that contain `text`.
    std::size_t count(std::string_view text) const
    {
        const auto all = lines();
        const auto matches = std::count_if(all.begin(), all.end(),
            [text](const std::string& line) { return line.find(text) != std::string::npos; });
        return static_cast<std::size_t>(matches);
    }

    void clear()
    {
        std::lock_guard guard(_record->mutex);
        _record->lines.clear();
    }

private:
    // Shared with the sink: a thread that is logging may still call it after the recorder is gone.
    struct Record {
        std::mutex mutex;
        std::vector<std::string> lines;
    };

    std::shared_ptr<Record> _record = std::make_shared<Record>();
    zef::LogSink _previous;
};
