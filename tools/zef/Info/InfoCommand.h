// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/FilesCommand.h"
#include "tools/zef/Info/InfoText.h"

namespace tool {

/// `zef info`: prints all that is known of files.
class InfoCommand final : public FilesCommand {
public:
    explicit InfoCommand(CLI::App& program);

private:
    std::string handle(ZEFFileItem&) override;

    InfoText _text;
    bool _json = false;
};

} // namespace tool
