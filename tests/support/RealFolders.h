// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"

#include <string>
#include <string_view>

/// Real folders, listed by the real catalog.
class RealFolders {
public:
    zef::Catalog& service() { return zef::Catalog::system(); }
    zef::FileURL url(std::string_view name) const { return _folder.folderUrl(name); }

    zef::Stat stat(std::string_view name) const
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink(_folder.path(name).c_str(), stat);
        return stat;
    }

    void addFolder(std::string_view name) { _folder.makeFolder(name); }
    void addFile(std::string_view name) { _folder.write(name); }
    void addLink(std::string_view name, std::string_view target) { _folder.symlink(target, name); }
    void addEntry(const std::string& folder, const std::string& name)
    {
        _folder.write(folder + "/" + name);
    }
    void addFolderEntry(const std::string& folder, const std::string& name)
    {
        _folder.makeFolder(folder + "/" + name);
    }
    void removeEntry(const std::string& folder, const std::string& name)
    {
        _folder.remove(folder + "/" + name);
    }
    void move(std::string_view from, std::string_view to) { _folder.rename(from, to); }
    void remove(std::string_view name) { _folder.remove(name); }
    void forbidReading(std::string_view name) { _folder.chmod(name, 0300); }

private:
    TemporaryFolder _folder;
};
