// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include "tools/zef/Command.h"

#include <string>
#include <vector>

namespace tool {

/// `zef trash`: moves files to the trash, in one request.
class TrashCommand final : public Command {
public:
    explicit TrashCommand(CLI::App& program);

    int run() override;

private:
    void find(const std::string& path);
    bool move() const;

    std::vector<std::string> _paths;
    /// The paths that lead to files, and those files.
    std::vector<std::string> _found;
    zef::Ref<ZEFFileItemArray> _files = zef::makeRef<ZEFFileItemArray>();
};

} // namespace tool
