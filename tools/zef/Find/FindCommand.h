// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include "tools/zef/Command.h"
#include "tools/zef/Find/ProgressLine.h"

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace tool {

/// `zef find`: prints files and everything beneath them.
class FindCommand final : public Command {
public:
    explicit FindCommand(CLI::App& program);

    int run() override;

private:
    void checkOptions() const;
    zef::Ref<ZEFFileItemArray> filesToIterate();
    zef::Ref<ZEFFileItemArray> found(const ZEFFileItemArray& files);
    zef::Ref<ZEFDirectoryFilter> directoryFilter(const ZEFFileItemArray& files);
    void fail(const std::string& path, const std::string& reason);
    void noteLog(std::string_view line);

    std::vector<std::string> _paths;
    std::ptrdiff_t _depth = -1;
    bool _visible = false;
    bool _normal = false;
    bool _plain = false;
    bool _json = false;
    ProgressLine _progress;
    /// Set on the threads that load, too.
    std::atomic<bool> _hasFailed{ false };
};

} // namespace tool
