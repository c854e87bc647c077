// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"
#include "ZEFFilesystemTools/Platform/Time/Date.h"
#include "ZEFFilesystemTools/Platform/Trash/OpenTrash.h"
#include "ZEFFilesystemTools/Platform/Trash/SourceFolder.h"

#include <cstddef>
#include <string>

namespace zef {

/// One file on its way to the trash. Functions that return a number return 0 or an errno value.
/// One thread at a time.
class TrashItem {
public:
    /// The entry `name` of `folder`, which `stat` describes; `index` is its place in the request.
    /// `folder` and `trash` are borrowed.
    TrashItem(std::size_t index, SourceFolder& folder, std::string name, const Stat& stat,
        OpenTrash& trash);

    std::size_t index() const { return _index; }
    SourceFolder& folder() const { return *_folder; }
    ObjectNumbers numbers() const { return ObjectNumbers::of(_stat); }
    bool isFolder() const { return _stat.isFolder(); }

    /// Writes its record, which reserves a name in the trash.
    [[nodiscard]] int writeInfo(Date date);

    /// Moves it, if it is still the described file. Its folder has to be open.
    [[nodiscard]] int move(Date date);

    /// Takes everything back that was done, as far as it was done; its folder has to be open if it
    /// was moved. If there is something else in its former place it stays in the trash with its
    /// record.
    [[nodiscard]] int undo();
    bool isMoved() const { return _isMoved; }

private:
    int rename(Date date);
    int verify(const ObjectDescriptor& object);
    void removeInfo();

    std::size_t _index;
    SourceFolder* _folder;
    OpenTrash* _trash;
    std::string _name;
    Stat _stat;
    /// Empty while it has no record.
    std::string _nameInTrash;
    bool _isMoved = false;
};

} // namespace zef
