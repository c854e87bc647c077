// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Presentation/LinuxFileInformation.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "tests/support/EnvironmentVariable.h"
#include "tests/support/FakeLocator.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>

/// Real files and a service of the test's own to ask about them; nothing may be logged.
class FileInformationFixture : public testing::Test {
protected:
    /// An object as it was when it was last seen.
    struct Seen {
        zef::FSRef ref;
        zef::FileURL url;
        bool isSymlink = false;
    };

    ~FileInformationFixture() override { EXPECT_TRUE(log.lines().empty()); }

    /// What is at a path now.
    static Seen track(const std::string& path, std::string_view name)
    {
        const auto whole = name.empty() ? path : path + "/" + std::string(name);
        zef::Stat stat;
        EXPECT_EQ(zef::FileSystem::system().statLink(whole.c_str(), stat), 0) << whole;
        const auto kind = stat.isFolder() ? zef::URLKind::folder : zef::URLKind::file;
        return { zef::FSRef(stat), zef::FileURL::fromPath(whole, kind), stat.isSymlink() };
    }

    Seen track(std::string_view name) const { return track(folder.path(), name); }

    void writeEntry(std::string_view name, const std::string& lines)
    {
        folder.write(name, "[Desktop Entry]\n" + lines);
    }

    std::string typeOf(const Seen& seen)
    {
        const auto type = information.copyContentType({ seen.ref, seen.url, seen.isSymlink });
        return type ? *type : errorText(type.error());
    }

    std::string typeOf(std::string_view name) { return typeOf(track(name)); }

    std::string displayNameOf(const Seen& seen)
    {
        return information.copyDisplayName({ seen.ref, seen.url, seen.isSymlink });
    }

    std::string displayNameOf(std::string_view name) { return displayNameOf(track(name)); }

    /// "hidden", "visible" or the error.
    std::string visibilityOf(const Seen& seen)
    {
        return visibility(information.copyInvisibility({ seen.ref, seen.url, seen.isSymlink }));
    }

    std::string visibilityOf(std::string_view name) { return visibilityOf(track(name)); }

    std::string visibilityAt(const zef::FileURL& url)
    {
        return visibility(information.copyInvisibilityAtURL(url));
    }

    TemporaryFolder folder;
    /// Made first, because it logs what is wrong with the system's MIME database.
    const zef::TypeTable& types = zef::TypeTable::shared();
    LogRecorder log;
    zef::LinuxFileInformation information;

private:
    static std::string errorText(zef::FileError error)
    {
        return "error " + std::to_string(numberOf(error));
    }

    static std::string visibility(const zef::Expected<bool>& isInvisible)
    {
        if (!isInvisible.hasValue())
            return errorText(isInvisible.error());
        return *isInvisible ? "hidden" : "visible";
    }
};
