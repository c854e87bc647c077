// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/FilesCommand.h"

namespace tool {

/// `zef archive`: prints of each file what leads to it later, one JSON object a line.
class ArchiveCommand final : public FilesCommand {
public:
    explicit ArchiveCommand(CLI::App& program);

private:
    std::string handle(ZEFFileItem&) override;
};

} // namespace tool
