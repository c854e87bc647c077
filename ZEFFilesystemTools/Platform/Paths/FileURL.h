// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Ref.h"
#include "ZEFFilesystemTools/Platform/Paths/FolderPath.h"
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zef {

/// What follows the last '.' of a file name; empty if there is no '.', if the name only begins with
/// it, or if a blank follows it. Borrowed from `name`.
ZEF_EXPORT std::string_view extensionOfName(std::string_view name) noexcept;

/// Whether a URL is marked as that of a folder, by a slash at its end.
enum class URLKind { file, folder };

/// A file URL: a normalised "file://" string, immutable and cheap to copy; or no URL (null).
///
/// Two URLs are equal if their strings are, so the slash at the end counts. The bytes of a path are
/// never recoded. All URLs of one folder share that folder's path. Any thread may use a URL of
/// its own; one `FileURL` object belongs to one thread at a time.
class ZEF_EXPORT FileURL {
public:
    FileURL() noexcept;
    FileURL(std::nullptr_t) noexcept;
    FileURL(const FileURL&) noexcept;
    FileURL(FileURL&&) noexcept;
    FileURL& operator=(const FileURL&) noexcept;
    FileURL& operator=(FileURL&&) noexcept;
    ~FileURL();

    /// The URL of a path. A relative path is taken from the current folder; "." and ".." and links
    /// stay; repeated slashes become one. Null for an empty path, for one that holds a NUL, and if
    /// there is no current folder.
    static FileURL fromPath(std::string_view path, URLKind);

    /// The URL that `text` writes: scheme "file" in any case, no host or "localhost", percent
    /// escapes decoded and written anew in one way. Null for anything else.
    static FileURL fromString(std::string_view text);

    /// The URL of the entry `name` of a folder; `name` must not be empty nor hold '/' or NUL.
    static FileURL inFolder(Ref<const FolderPath> folder, std::string_view name, URLKind);

    explicit operator bool() const noexcept { return static_cast<bool>(_node); }
    bool operator==(const FileURL& other) const noexcept;

    /// Whether both have the same path, whatever their marks. False if either is null.
    bool hasPathOf(const FileURL& other) const noexcept;

    /// The whole string; characters other than letters, digits and -._~!$&'()*+,:=@/ are escaped
    /// (RFC 3986). Empty for null.
    std::string absoluteString() const;

    /// Whether the URL ends in a slash.
    bool hasDirectoryPath() const noexcept;

    /// The path without a slash at its end, except for "/" itself. Empty for null.
    std::string path() const;

    /// Writes `path` for system calls. False if it is longer than PATH_MAX allows, or for null.
    bool fileSystemRepresentation(PathBytes&) const;

    /// The name of the file, unescaped; "/" for the root. Empty for null.
    std::string lastPathComponent() const;

    /// The same without making a string; borrowed from the URL, and empty for the root.
    std::string_view name() const noexcept;

    /// The name's extension, see `extensionOfName`.
    std::string pathExtension() const;

    /// The URL of the folder that this one is in, ending in a slash; the root's is the root.
    FileURL deletingLastPathComponent() const;

    /// The URL of the entry `name` of this folder.
    FileURL appendingPathComponent(std::string_view name, URLKind) const;

    /// The same URL with another mark.
    FileURL withKind(URLKind) const;

    /// Whether `deletingLastPathComponent` would equal `folder`; makes nothing.
    bool isDirectlyIn(const FileURL& folder) const noexcept;

    /// The path of the folder that this URL is in.
    const FolderPath& parentFolder() const noexcept;

    /// This URL's own path as that of a folder, for `inFolder`.
    Ref<const FolderPath> asFolder() const;

private:
    class Node;
    explicit FileURL(Ref<const Node>) noexcept;

    Ref<const Node> _node;
};

} // namespace zef
