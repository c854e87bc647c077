// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Text/PercentEncoding.h"
#include "ZEFFilesystemTools/Platform/Types/AsciiCase.h"
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

// The type of a folder by its extension; empty for an ordinary one.
std::string_view packageType(std::string_view extension)
{
    if (holds(applicationExtensions, extension))
        return "org.freedesktop.application-bundle";
    return holds(packageExtensions, extension) ? type::package : std::string_view();
}

// Small letters and only graphic characters, so that identifiers can be shown and written anywhere.
std::string dynamicType(std::string_view prefix, std::string_view extension)
{
    std::string folded(extension);
    std::transform(folded.begin(), folded.end(), folded.begin(), foldedCase);
    std::string identifier(prefix);
    appendPercentEncoded(
        identifier, folded, [](char byte) { return byte > ' ' && byte < 0x7f && byte != '%'; });
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

TypeTable::TypeTable(const std::vector<std::string>& mimeFolders)
    : _storage(std::make_unique<const TypeTableStorage>(databasesIn(mimeFolders)))
{
}

TypeTable::~TypeTable() = default;

const TypeTable& TypeTable::shared()
{
    // Never destroyed: late threads may still ask.
    static const auto& table = *new TypeTable(MimeDatabase::folders());
    return table;
}

bool TypeTable::conforms(std::string_view type, std::string_view other) const
{
    return _storage->conforms(type, other);
}

std::vector<std::string> TypeTable::conformances(std::string_view type) const
{
    const auto found = _storage->conformances(type);
    return { found.begin(), found.end() };
}

std::string TypeTable::typeOfFileNamed(std::string_view name) const
{
    const auto known = _storage->typeOfName(name);
    return std::string(known.empty() ? type::data : known);
}

std::string TypeTable::typeOfFolderNamed(std::string_view name) const
{
    const auto known = packageType(extensionOfName(name));
    return std::string(known.empty() ? type::folder : known);
}

std::string TypeTable::preferredTypeForExtension(
    std::string_view extension, std::string_view conforming) const
{
    if (extension.empty())
        return std::string(conforming);
    const bool isForFolders = conforms(conforming, type::directory);
    const auto known = isForFolders ? packageType(extension) : _storage->typeOfExtension(extension);
    if (!known.empty())
        return std::string(known);
    return dynamicType(isForFolders ? "dyn.directory." : "dyn.data.", extension);
}

} // namespace zef
