// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include "tools/zef/Command.h"
#include "tools/zef/LineInput.h"

#include <cstddef>
#include <string>

namespace tool {

/// `zef resolve`: reads what `zef archive` has written and prints where each file is now.
class ResolveCommand final : public Command {
public:
    explicit ResolveCommand(CLI::App& program);

    int run() override;

private:
    /// What `zef archive` writes is much shorter; what is parsed takes many times the memory.
    static constexpr std::size_t longestLine = std::size_t{ 1024 } * 1024;

    static zef::Ref<ZEFArchiveDictionary> archiveIn(const LineReader::Line&);
    void resolveLines();
    void resolve(const LineReader::Line&);
    void resolve(const ZEFArchiveDictionary&);
    void show(const ZEFFileItem&) const;
    void fail(const std::string& what, const std::string& reason);
    std::string nameOfLine() const;

    LineInput _input{ longestLine };
    std::size_t _lineNumber = 0;
    bool _hasFailed = false;
    bool _plain = false;
    bool _json = false;
};

} // namespace tool
