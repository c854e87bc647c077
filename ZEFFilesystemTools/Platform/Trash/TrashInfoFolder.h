// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"
#include "ZEFFilesystemTools/Platform/Time/Date.h"

#include <string>
#include <string_view>
#include <vector>

namespace zef {

/// The record of a file in the trash: where it was, `path`, whose bytes are percent-encoded, and
/// when it went, in the system's local time. Any thread.
std::string trashInfoText(std::string_view path, Date date);

/// The folder of a trash with the records of its files. One thread at a time.
class TrashInfoFolder {
public:
    /// Takes over the folder, opened for reading.
    explicit TrashInfoFolder(Ref<ObjectDescriptor> folder);

    /// Writes the record of the file that is to have this name in the trash, which takes the name:
    /// EEXIST if it is taken. 0 or an errno value, and then there is nothing left of it.
    [[nodiscard]] int write(const std::string& name, std::string_view text);

    /// Waits until all that was written since the last time is safe from a power cut. 0 or an errno
    /// value.
    [[nodiscard]] int synchronise();

    void remove(const std::string& name);

private:
    int writeNew(const std::string& file, std::string_view text);
    int synchroniseFile(const std::string& file);

    Ref<ObjectDescriptor> _folder;
    std::vector<std::string> _unsafeFiles;
};

} // namespace zef
