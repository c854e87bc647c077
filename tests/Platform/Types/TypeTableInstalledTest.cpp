// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "ZEFFilesystemTools/Platform/Types/BuiltInTypes.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

constexpr auto dataFolder = "/usr/share";

// What GIO calls our own types.
const std::map<std::string, std::string> mimeTypes{
    { "public.data", "application/octet-stream" },
    { "public.plain-text", "text/plain" },
    { "public.html", "text/html" },
    { "public.xml", "application/xml" },
    { "public.json", "application/json" },
    { "public.css", "text/css" },
    { "public.comma-separated-values-text", "text/csv" },
    { "public.markdown", "text/markdown" },
    { "public.rtf", "application/rtf" },
    { "public.c-source", "text/x-csrc" },
    { "public.c-plus-plus-source", "text/x-c++src" },
    { "public.python-script", "text/x-python" },
    { "public.shell-script", "application/x-shellscript" },
    { "public.pdf", "application/pdf" },
    { "public.jpeg", "image/jpeg" },
    { "public.png", "image/png" },
    { "public.svg-image", "image/svg+xml" },
    { "public.mp3", "audio/mpeg" },
    { "public.flac", "audio/flac" },
    { "public.mpeg", "video/mpeg" },
    { "public.mpeg-4", "video/mp4" },
    { "public.matroska", "video/x-matroska" },
    { "public.zip-archive", "application/zip" },
    { "public.gzip-archive", "application/gzip" },
    { "public.tar-archive", "application/x-tar" },
    { "org.freedesktop.desktop-entry", "application/x-desktop" },
};

const std::vector<std::string> sampleNames{ "a.txt", "a.html", "a.HTM", "a.xml", "a.json", "a.css",
    "a.csv", "a.md", "a.rtf", "a.c", "main.C", "a.cpp", "a.py", "a.sh", "a.pdf", "a.jpg", "a.JPEG",
    "a.png", "a.svg", "a.mp3", "a.flac", "a.mp4", "a.mkv", "a.zip", "a.gz", "a.tar", "a.desktop",
    "a.tar.gz", "a.tgz", "a.tar.xz", "a.docx", "a.odt", "a.xls", "a.epub", "a.deb", "a.rpm",
    "a.jar", "a.ttf", "a.java", "a.rb", "a.tex", "a.log", "a.psd", "a.xcf", "a.midi", "a.ape",
    "a.toml", "a.diff", "a.o", "a.so", "a.so.1.2", "a.1", "a.bak", "a.txt~", "Makefile",
    "Makefile.am", "CMakeLists.txt", "README", "README.md", "core", "CORE", "a.gs", "a.GS",
    "123.vdr", "a.unheardof", "unheardof", "a.po", "a.ps.gz", "a.iso.unheardof", "meson.build" };

class TypeTableInstalledTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (::access("/usr/share/mime/globs2", R_OK) != 0)
            GTEST_SKIP() << "there is no shared MIME database";
    }

    // What GIO says of files with these names, none of them empty; nothing where there is no GIO.
    std::map<std::string, std::string> answersOfGIO(const std::vector<std::string>& names)
    {
        for (const auto& name : names)
            folder.write(name);
        // Without the user's own database, and without a bus that it might start something by.
        const auto command = "cd '" + folder.path() + "' && XDG_DATA_HOME='" + folder.path()
            + "' XDG_DATA_DIRS=" + dataFolder
            + " GIO_USE_VFS=local gio info -n -a standard::fast-content-type -- * 2>/dev/null";
        return parse(outputOf(command));
    }

    TemporaryFolder folder;
    const zef::TypeTable table{ { std::string(dataFolder) + "/mime" } };

private:
    static std::string outputOf(const std::string& command)
    {
        std::string output;
        std::array<char, 4096> buffer{};
        auto* pipe = ::popen(command.c_str(), "r");
        if (!pipe)
            return output;
        while (const auto count = std::fread(buffer.data(), 1, buffer.size(), pipe))
            output.append(buffer.data(), count);
        ::pclose(pipe);
        return output;
    }

    static std::map<std::string, std::string> parse(const std::string& output)
    {
        constexpr std::string_view pathKey = "local path: ";
        constexpr std::string_view typeKey = "  standard::fast-content-type: ";
        std::map<std::string, std::string> answers;
        std::istringstream stream(output);
        std::string name;
        for (std::string line; std::getline(stream, line);) {
            if (line.starts_with(pathKey))
                name = line.substr(line.rfind('/') + 1);
            else if (line.starts_with(typeKey))
                answers[name] = line.substr(typeKey.size());
        }
        return answers;
    }
};

TEST_F(TypeTableInstalledTest, AnswersAsGIODoes)
{
    const auto answers = answersOfGIO(sampleNames);
    if (answers.empty())
        GTEST_SKIP() << "there is no gio program";

    ASSERT_EQ(answers.size(), sampleNames.size());
    for (const auto& [name, mimeType] : answers) {
        const auto type = table.typeOfFileNamed(name);
        const auto own = mimeTypes.find(type);
        EXPECT_EQ(own == mimeTypes.end() ? type : "mime:" + own->second, "mime:" + mimeType)
            << name;
    }
}

TEST_F(TypeTableInstalledTest, BuiltInTypesAreTheSameKindsAsWithoutADatabase)
{
    const zef::TypeTable alone({});

    for (const auto& own : zef::builtInTypes()) {
        for (const auto& other : zef::builtInTypes())
            EXPECT_EQ(table.conforms(own.identifier, other.identifier),
                alone.conforms(own.identifier, other.identifier))
                << own.identifier << " " << other.identifier;
    }
}

TEST_F(TypeTableInstalledTest, OwnExtensionsHaveTheSameTypesAsWithoutADatabase)
{
    const zef::TypeTable alone({});

    for (const auto& own : zef::builtInTypes()) {
        for (auto list = own.extensions; !list.empty();) {
            auto extension = zef::takeListedWord(list);
            extension.remove_prefix(extension.starts_with('=') ? 1 : 0);
            const auto name = "x." + std::string(extension);
            EXPECT_EQ(table.typeOfFileNamed(name), alone.typeOfFileNamed(name));
        }
    }
}

TEST_F(TypeTableInstalledTest, KnowsWhatTheDatabasesTypesAreKindsOf)
{
    EXPECT_TRUE(table.conforms(table.typeOfFileNamed("a.docx"), "mime:application/zip"));
    EXPECT_TRUE(table.conforms(table.typeOfFileNamed("a.tar.gz"), "public.gzip-archive"));
    EXPECT_TRUE(table.conforms(table.typeOfFileNamed("Makefile"), "public.plain-text"));
    EXPECT_TRUE(table.conforms(table.typeOfFileNamed("a.xcf"), "public.image"));
    EXPECT_FALSE(table.conforms(table.typeOfFileNamed("a.docx"), "public.plain-text"));
}

} // namespace
