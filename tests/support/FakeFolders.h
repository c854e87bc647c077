// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include "tests/support/FakeCatalog.h"
#include "tests/support/FakeFileSystem.h"

#include <string>
#include <string_view>

/// Folders of the fake catalog, whose numbers come from a fake file system.
class FakeFolders {
public:
    zef::Catalog& service() { return _catalog; }
    zef::FileURL url(std::string_view name) const
    {
        return zef::FileURL::fromPath(path(name), zef::URLKind::folder);
    }

    zef::Stat stat(std::string_view name)
    {
        zef::Stat stat;
        _files.statLink(path(name).c_str(), stat);
        return stat;
    }

    void addFolder(std::string_view name) { _catalog.add(url(name), _files.addFolder(path(name))); }
    void addFile(std::string_view name) { _catalog.add(url(name), _files.addFile(path(name))); }
    void addLink(std::string_view name, std::string_view target)
    {
        _catalog.add(url(name), _files.addLink(path(name), target));
    }
    void addEntry(const std::string& folder, const std::string& name)
    {
        _catalog.addEntry(url(folder), name, _files.addFile(path(folder + "/" + name)));
    }
    void addFolderEntry(const std::string& folder, const std::string& name)
    {
        const auto made = _files.addFolder(path(folder + "/" + name));
        _catalog.addEntry(url(folder), name, made);
        _catalog.add(url(folder + "/" + name), made);
    }
    void removeEntry(const std::string& folder, const std::string& name)
    {
        _catalog.removeEntry(url(folder), name);
        _files.remove(path(folder + "/" + name));
    }
    void move(std::string_view from, std::string_view to)
    {
        _catalog.move(url(from), url(to));
        _files.rename(path(from), path(to));
    }
    void remove(std::string_view name)
    {
        _catalog.remove(url(name));
        _files.remove(path(name));
    }
    void forbidReading(std::string_view name)
    {
        _catalog.setReadResult(url(name), zef::FileError::accessDenied);
    }

private:
    static std::string path(std::string_view name) { return "/" + std::string(name); }

    FakeFileSystem _files;
    FakeCatalog _catalog;
};
