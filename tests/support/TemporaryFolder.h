// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <string>
#include <string_view>

#include <sys/types.h>

/// A real folder of the test's own, removed with everything in it at the end.
///
/// Names are paths relative to the folder. What can't be done throws std::system_error, so that the
/// test fails.
class TemporaryFolder {
public:
    /// Lies below the folder that the environment variable ZEF_TEST_FOLDER names, or /tmp.
    TemporaryFolder();
    /// Lies below `base`.
    explicit TemporaryFolder(const std::string& base);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The folder's own path, without symbolic links and without a slash at its end.
    const std::string& path() const { return _path; }
    std::string path(std::string_view name) const;

    zef::FileURL url(std::string_view name) const;
    /// The folder's own URL, or that of a folder in it; with a slash at its end.
    zef::FileURL folderUrl(std::string_view name = {}) const;

    /// Makes the file, or replaces the contents of an existing one, which stays the same object.
    zef::FileURL write(std::string_view name, std::string_view text = "text");
    zef::FileURL append(std::string_view name, std::string_view text);
    /// Makes the folder; its parent must exist.
    zef::FileURL makeFolder(std::string_view name);
    /// Gives the file `existing` a second name.
    zef::FileURL link(std::string_view existing, std::string_view name);
    /// Makes a symbolic link with `target` as its text.
    zef::FileURL symlink(std::string_view target, std::string_view name);
    /// The new URL, of the same kind as the object.
    zef::FileURL rename(std::string_view from, std::string_view to);
    /// Exchanges two objects atomically (RENAME_EXCHANGE).
    void exchange(std::string_view one, std::string_view other);
    /// Removes a file, or a folder with everything in it, however it is protected.
    void remove(std::string_view name);

    void chmod(std::string_view name, mode_t mode);
    /// Whole seconds since 1970; a link's own time.
    void setModificationTime(std::string_view name, time_t seconds);
    /// Returns true if the name exists, even as a link that leads nowhere.
    bool exists(std::string_view name) const;
    std::string contents(std::string_view name) const;

private:
    std::string _path;
};
