// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "ZEFFilesystemTools/Platform/Types/AsciiCase.h"
#include "ZEFFilesystemTools/Platform/Types/MimeFolders.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTableStorage.h"

#include <algorithm>
#include <array>

namespace zef {
namespace {

constexpr std::array<std::string_view, 9> packageExtensions{ "app", "AppDir", "bundle", "plugin",
    "component", "pkg", "mpkg", "rtfd", "nib" };
constexpr std::array<std::string_view, 2> applicationExtensions{ "app", "AppDir" };

template <typename List> bool holds(const List& extensions, std::string_view extension)
{
    return std::any_of(extensions.begin(), extensions.end(),
        [&](auto one) { return equalsFolded(one, extension); });
}

// The type of a folder by its extension; empty when it is an ordinary one.
std::string_view packageType(std::string_view extension)
{
    if (holds(applicationExtensions, extension))
        return "org.freedesktop.application-bundle";
    return holds(packageExtensions, extension) ? type::package : std::string_view();
}

// What URLs of files call the extension, see FileURL::pathExtension.
std::string_view extensionOf(std::string_view name)
{
    const auto dot = name.rfind('.');
    return dot == name.npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

// Small letters and only graphic characters, so that identifiers can be shown and written anywhere.
std::string dynamicType(std::string_view prefix, std::string_view extension)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string identifier(prefix);
    for (const auto character : extension) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte > ' ' && byte < 0x7f && byte != '%')
            identifier += foldedCase(character);
        else
            (identifier += '%').append({ digits[byte / 16], digits[byte % 16] });
    }
    return identifier;
}

std::vector<MimeDatabase> databasesIn(const std::vector<std::string>& folders)
{
    std::vector<MimeDatabase> databases;
    databases.reserve(folders.size());
    for (const auto& folder : folders)
        databases.push_back(MimeDatabase::inFolder(folder));
    return databases;
}

} // namespace

class ZEF_INTERNAL TypeTable::Storage {
public:
    explicit Storage(const std::vector<std::string>& mimeFolders)
        : types(databasesIn(mimeFolders))
    {
    }

    const TypeTableStorage types;
};

TypeTable::TypeTable(const std::vector<std::string>& mimeFolders)
    : _storage(std::make_unique<const Storage>(mimeFolders))
{
}

TypeTable::~TypeTable() = default;

const TypeTable& TypeTable::shared()
{
    static const auto& table = *new TypeTable(
        mimeFolders()); // never destroyed: threads may be late
    return table;
}

bool TypeTable::conforms(std::string_view type, std::string_view other) const
{
    return _storage->types.conforms(type, other);
}

std::vector<std::string> TypeTable::conformances(std::string_view type) const
{
    const auto found = _storage->types.conformances(type);
    return { found.begin(), found.end() };
}

std::string TypeTable::typeOfFileNamed(std::string_view name) const
{
    const auto known = _storage->types.typeOfName(name);
    return std::string(known.empty() ? type::data : known);
}

std::string TypeTable::typeOfFolderNamed(std::string_view name) const
{
    const auto known = packageType(extensionOf(name));
    return std::string(known.empty() ? type::folder : known);
}

std::string TypeTable::preferredTypeForExtension(
    std::string_view extension, std::string_view conforming) const
{
    if (extension.empty())
        return std::string(conforming);
    const bool isForFolders = conforms(conforming, type::directory);
    const auto known = isForFolders ? packageType(extension)
                                    : _storage->types.typeOfExtension(extension);
    if (!known.empty())
        return std::string(known);
    return dynamicType(isForFolders ? "dyn.directory." : "dyn.data.", extension);
}

} // namespace zef
