// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "ZEFFilesystemTools/Platform/Types/BuiltInTypes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

class TypeTableTest : public testing::Test {
protected:
    const zef::TypeTable table{ {} };

    std::string types(const std::string& names, bool ofFolders = false) const
    {
        std::string result;
        for (std::string_view list = names; !list.empty();) {
            const auto name = zef::takeListedWord(list);
            result += (result.empty() ? "" : " ");
            result += ofFolders ? table.typeOfFolderNamed(name) : table.typeOfFileNamed(name);
        }
        return result;
    }
};

TEST_F(TypeTableTest, ListsWhatATypeIsAKindOfTheNearestFirst)
{
    using Types = std::vector<std::string>;

    EXPECT_EQ(table.conformances("public.PNG"),
        (Types{ "public.png", "public.image", "public.data", "public.item" }));
    EXPECT_EQ(table.conformances("public.item"), Types{ "public.item" });
    EXPECT_EQ(table.conformances("dyn.data.xyz"),
        (Types{ "dyn.data.xyz", "public.data", "public.item" }));
    EXPECT_EQ(table.conformances("never heard of"), Types{ "never heard of" });
    EXPECT_EQ(table.conformances(""), Types{ "" });
}

TEST_F(TypeTableTest, KnowsWhatEachBuiltInTypeIsAKindOf)
{
    const Rows kinds{
        { "public.data", "public.item" },
        { "public.directory", "public.item" },
        { "public.folder", "public.directory" },
        { "public.volume", "public.folder" },
        { "public.symlink", "public.item" },
        { "org.freedesktop.package", "public.directory" },
        { "org.freedesktop.application", "public.item" },
        { "org.freedesktop.application-bundle", "org.freedesktop.application" },
        { "org.freedesktop.application-bundle", "org.freedesktop.package" },
        { "org.freedesktop.application-entry", "org.freedesktop.application" },
        { "org.freedesktop.application-entry", "public.data" },
        { "org.freedesktop.application-image", "org.freedesktop.application" },
        { "org.freedesktop.application-image", "public.data" },
        { "org.freedesktop.alias-file", "public.data" },
        { "org.freedesktop.desktop-entry", "public.data" },
        { "public.plain-text", "public.data" },
        { "public.image", "public.data" },
        { "public.audio", "public.data" },
        { "public.movie", "public.data" },
        { "public.archive", "public.data" },
        { "public.html", "public.data" },
        { "public.jpeg", "public.image" },
        { "public.svg-image", "public.image" },
        { "public.svg-image", "public.plain-text" },
        { "public.webm", "public.movie" },
    };

    for (const auto& [type, kind] : kinds) {
        EXPECT_TRUE(table.conforms(type, kind)) << type << " " << kind;
        EXPECT_FALSE(table.conforms(kind, type)) << kind << " " << type;
    }
}

TEST_F(TypeTableTest, KeepsFoldersDataAndLinksApart)
{
    const Rows others{
        { "public.data", "public.directory" },
        { "public.folder", "public.data" },
        { "org.freedesktop.package", "public.folder" },
        { "org.freedesktop.application-bundle", "public.folder" },
        { "org.freedesktop.application-entry", "org.freedesktop.package" },
        { "org.freedesktop.application", "public.data" },
        { "org.freedesktop.alias-file", "org.freedesktop.application" },
        { "public.symlink", "public.data" },
        { "public.symlink", "org.freedesktop.alias-file" },
        { "public.jpeg", "public.png" },
    };

    for (const auto& [type, other] : others)
        EXPECT_FALSE(table.conforms(type, other)) << type << " " << other;
}

TEST_F(TypeTableTest, EveryBuiltInTypeIsAnItemAndAKindOfItself)
{
    for (const auto& own : zef::builtInTypes()) {
        EXPECT_TRUE(table.conforms(own.identifier, own.identifier)) << own.identifier;
        EXPECT_TRUE(table.conforms(own.identifier, "public.item")) << own.identifier;
    }
}

TEST_F(TypeTableTest, EveryOwnExtensionNamesItsType)
{
    for (const auto& own : zef::builtInTypes()) {
        for (auto list = own.extensions; !list.empty();) {
            auto extension = zef::takeListedWord(list);
            extension.remove_prefix(extension.starts_with('=') ? 1 : 0);
            const auto name = "x y." + std::string(extension);
            EXPECT_EQ(table.typeOfFileNamed(name), own.identifier) << name;
            EXPECT_EQ(table.preferredTypeForExtension(extension, "public.data"), own.identifier);
            EXPECT_TRUE(table.conforms(own.identifier, "public.data")) << own.identifier;
        }
    }
}

TEST_F(TypeTableTest, EveryMimeTypeOfABuiltInTypeIsAnotherNameOfIt)
{
    for (const auto& own : zef::builtInTypes()) {
        for (auto list = own.mimeTypes; !list.empty();) {
            const auto mime = "mime:" + std::string(zef::takeListedWord(list));
            EXPECT_TRUE(table.conforms(mime, own.identifier)) << mime;
            EXPECT_TRUE(table.conforms(own.identifier, mime)) << mime;
        }
    }
}

TEST_F(TypeTableTest, EveryListedParentIsKnown)
{
    for (const auto& own : zef::builtInTypes()) {
        for (auto list = own.parents; !list.empty();) {
            const auto parent = zef::takeListedWord(list);
            EXPECT_TRUE(table.conforms(own.identifier, parent)) << own.identifier << " " << parent;
        }
    }
}

TEST_F(TypeTableTest, LeavesTheCaseOfIdentifiersAside)
{
    EXPECT_TRUE(table.conforms("PUBLIC.Jpeg", "Public.DATA"));
    EXPECT_TRUE(table.conforms("Some.Type", "some.TYPE"));
    EXPECT_TRUE(table.conforms("MIME:Text/X-Nobody", "public.plain-text"));
}

TEST_F(TypeTableTest, AnUnknownTypeIsAKindOfNothingElse)
{
    EXPECT_TRUE(table.conforms("com.example.type", "com.example.type"));
    EXPECT_FALSE(table.conforms("com.example.type", "public.item"));
    EXPECT_FALSE(table.conforms("public.data", "com.example.type"));
    EXPECT_FALSE(table.conforms("", "public.item"));
}

TEST_F(TypeTableTest, UnknownMimeTypesAreWhatTheirFamilyIs)
{
    EXPECT_TRUE(table.conforms("mime:text/x-nobody", "public.plain-text"));
    EXPECT_TRUE(table.conforms("mime:image/x-nobody", "public.image"));
    EXPECT_TRUE(table.conforms("mime:audio/x-nobody", "public.audio"));
    EXPECT_TRUE(table.conforms("mime:video/x-nobody", "public.movie"));
    EXPECT_TRUE(table.conforms("mime:application/x-nobody", "public.data"));
    EXPECT_FALSE(table.conforms("mime:application/x-nobody", "public.plain-text"));
    EXPECT_TRUE(table.conforms("mime:inode/socket", "public.item"));
    EXPECT_FALSE(table.conforms("mime:inode/socket", "public.data"));
}

TEST_F(TypeTableTest, FilesWithoutAKnownExtensionAreData)
{
    EXPECT_EQ(types("README file.nobody .txt .hidden name. a.txt/b"),
        "public.data public.data public.data public.data public.data public.data");
    EXPECT_EQ(table.typeOfFileNamed(""), "public.data");
}

TEST_F(TypeTableTest, LeavesTheCaseOfExtensionsAsideUnlessItTells)
{
    EXPECT_EQ(types("a.TXT a.JpEg a.appimage"),
        "public.plain-text public.jpeg org.freedesktop.application-image");
    EXPECT_EQ(types("a.c a.C"), "public.c-source public.c-plus-plus-source");
}

TEST_F(TypeTableTest, ADesktopEntrysKindIsLeftOpen)
{
    EXPECT_EQ(types("a.desktop a.DESKTOP"),
        "org.freedesktop.desktop-entry org.freedesktop.desktop-entry");
}

TEST_F(TypeTableTest, FoldersArePackagesByTheirExtension)
{
    for (const char* name : { "a.app", "a.APP", "a.AppDir", "a.appdir", "org.x.app" })
        EXPECT_EQ(table.typeOfFolderNamed(name), "org.freedesktop.application-bundle") << name;
    for (const char* name :
        { "a.bundle", "a.plugin", "a.component", "a.pkg", "a.mpkg", "a.rtfd", "a.nib", "a.NIB" })
        EXPECT_EQ(table.typeOfFolderNamed(name), "org.freedesktop.package") << name;
}

TEST_F(TypeTableTest, OtherFoldersAreFolders)
{
    for (const char* name : { "", "a", "a.txt", ".app", "app", "a.app.d", "a.application", "a." })
        EXPECT_EQ(table.typeOfFolderNamed(name), "public.folder") << name;
}

TEST_F(TypeTableTest, FilesAreNoPackages)
{
    EXPECT_EQ(types("a.app a.pkg"), "public.data public.data");
}

TEST_F(TypeTableTest, PrefersTheTypesThatConform)
{
    EXPECT_EQ(table.preferredTypeForExtension("JPG", "public.data"), "public.jpeg");
    EXPECT_EQ(table.preferredTypeForExtension("jpg", "public.directory"), "dyn.directory.jpg");
    EXPECT_EQ(table.preferredTypeForExtension("app", "public.directory"),
        "org.freedesktop.application-bundle");
    EXPECT_EQ(
        table.preferredTypeForExtension("pkg", "public.directory"), "org.freedesktop.package");
    EXPECT_EQ(table.preferredTypeForExtension("app", "public.data"), "dyn.data.app");
}

TEST_F(TypeTableTest, AnEmptyExtensionHasTheConformingType)
{
    EXPECT_EQ(table.preferredTypeForExtension("", "public.data"), "public.data");
    EXPECT_EQ(table.preferredTypeForExtension("", "public.directory"), "public.directory");
}

TEST_F(TypeTableTest, MakesATypeForAnUnknownExtension)
{
    const auto data = table.preferredTypeForExtension("Nobody", "public.data");
    const auto folder = table.preferredTypeForExtension("nobody", "public.directory");

    EXPECT_EQ(data, "dyn.data.nobody");
    EXPECT_TRUE(table.conforms(data, "public.data"));
    EXPECT_TRUE(table.conforms(data, "DYN.DATA.NOBODY"));
    EXPECT_FALSE(table.conforms(data, "public.directory"));
    EXPECT_EQ(folder, "dyn.directory.nobody");
    EXPECT_TRUE(table.conforms(folder, "public.directory"));
    EXPECT_FALSE(table.conforms(folder, "public.data"));
}

TEST_F(TypeTableTest, WritesOtherBytesOfAnExtensionAsNumbers)
{
    EXPECT_EQ(table.preferredTypeForExtension("a\n\xff%\x7f b", "public.data"),
        "dyn.data.a%0A%FF%25%7F%20b");
}

} // namespace
