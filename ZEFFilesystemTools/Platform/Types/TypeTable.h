// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The type identifiers that the library itself asks for; `TypeTable` knows more.
namespace zef::type {

inline constexpr std::string_view item = "public.item";
inline constexpr std::string_view data = "public.data";
inline constexpr std::string_view directory = "public.directory";
inline constexpr std::string_view folder = "public.folder";
inline constexpr std::string_view symlink = "public.symlink";
inline constexpr std::string_view package = "org.freedesktop.package";
inline constexpr std::string_view application = "org.freedesktop.application";
inline constexpr std::string_view applicationEntry = "org.freedesktop.application-entry";
inline constexpr std::string_view aliasFile = "org.freedesktop.alias-file";
inline constexpr std::string_view desktopEntry = "org.freedesktop.desktop-entry";

} // namespace zef::type

namespace zef {

class TypeTableStorage;

/// The types of files, by their names, and which of them is a kind of which other: a small built-in
/// table, completed from the system's shared MIME database where that is installed.
///
/// Identifiers are compared without case. Immutable once made; any thread.
class ZEF_EXPORT TypeTable {
public:
    /// The table of this system, loaded on the first call from the folders that `XDG_DATA_HOME`
    /// and `XDG_DATA_DIRS` name, and never destroyed.
    static const TypeTable& shared();

    /// A table completed from the MIME databases in `mimeFolders`, the most important one first;
    /// with none it is the built-in table alone.
    explicit TypeTable(const std::vector<std::string>& mimeFolders);
    ~TypeTable();
    TypeTable(const TypeTable&) = delete;
    TypeTable& operator=(const TypeTable&) = delete;

    /// Whether `type` is `other` or a kind of it.
    bool conforms(std::string_view type, std::string_view other) const;

    /// `type` itself, as the table writes it, and everything that it is a kind of, the nearest
    /// first.
    std::vector<std::string> conformances(std::string_view type) const;

    /// The type of a file, or of a folder, that is called `name`; what its content decides (a
    /// desktop entry's kind) is left open.
    std::string typeOfFileNamed(std::string_view name) const;
    std::string typeOfFolderNamed(std::string_view name) const;

    /// The type for a file name's extension among those that conform to `conforming`, which is
    /// `type::directory` or `type::data` and is also the answer for an empty extension.
    std::string preferredTypeForExtension(
        std::string_view extension, std::string_view conforming) const;

private:
    std::unique_ptr<const TypeTableStorage> _storage;
};

} // namespace zef
