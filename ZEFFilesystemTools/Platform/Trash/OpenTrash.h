// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Folders/FolderAscent.h"
#include "ZEFFilesystemTools/Platform/Time/Date.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashInfoFolder.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashName.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashProblem.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace zef {

/// One trash of this user, opened: the one in the home folder or one of a volume. Everything is
/// done relative to its opened folders, which are the user's own and are not links. One thread at a
/// time.
class OpenTrash {
public:
    using Opened = Expected<std::unique_ptr<OpenTrash>, TrashProblem>;

    /// Opens the trash at `path`, made with the folders above it where there is none. `path` may be
    /// a link to it: nobody but the user can make one there.
    static Opened openHome(const std::string& path);

    /// Opens a volume's trash in its highest folder: `.Trash/UID` where the administrator made a
    /// fit `.Trash`, otherwise `.Trash-UID`, which is made where there is none.
    static Opened openOnVolume(const ObjectDescriptor& top);

    /// Whether a volume's trashes have such a name in its highest folder.
    static bool isNameOfTrash(std::string_view name);

    /// The folder for the files themselves.
    int files() const { return _files->descriptor(); }

    /// Writes the record of the file that `path` leads to and that has this name. Its name in the
    /// trash, or an errno value.
    Expected<std::string, int> writeInfo(
        const std::string& path, const std::string& name, Date date);
    TrashInfoFolder& infos() { return _infos; }

    /// The way up from the trash itself.
    const FolderAscent& ascent() const { return _ascent; }

private:
    OpenTrash(Ref<ObjectDescriptor> files, Ref<ObjectDescriptor> infos, std::string top);

    static Opened open(const Ref<ObjectDescriptor>& trash, std::string top);
    std::string_view recordedPath(std::string_view path) const;

    Ref<ObjectDescriptor> _files;
    TrashInfoFolder _infos;
    /// Paths are recorded relative to this; empty for the home trash.
    std::string _top;
    FolderAscent _ascent;
    /// The number that each name of this request got last.
    std::unordered_map<std::string, unsigned> _lastNumbers;
};

} // namespace zef
