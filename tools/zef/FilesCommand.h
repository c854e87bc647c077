// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include "tools/zef/Command.h"

#include <string>
#include <vector>

namespace tool {

/// A command that does the same with each of the files that the user names.
class FilesCommand : public Command {
public:
    int run() override;

protected:
    FilesCommand(CLI::App& program, const std::string& name, const std::string& description,
        const std::string& descriptionOfFiles);

    bool isPlain() const { return _plain; }

private:
    /// Empty when it is done; otherwise why it can't be.
    virtual std::string handle(ZEFFileItem&) = 0;

    bool handleFile(const std::string& path);

    std::vector<std::string> _paths;
    bool _plain = false;
};

} // namespace tool
