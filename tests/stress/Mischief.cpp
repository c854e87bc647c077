// SPDX-License-Identifier: MIT
#include "tests/stress/Mischief.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

bool isFolder(const std::string& path)
{
    std::error_code error;
    return fs::is_directory(fs::symlink_status(path, error));
}

void write(const std::string& path, const std::string& text, std::ios::openmode mode)
{
    std::ofstream(path, mode) << text;
}

std::string parentOf(const std::string& path)
{
    return path.substr(0, path.rfind('/'));
}

} // namespace

void Mischief::doSomething()
{
    struct Choice {
        unsigned weight;
        void (Mischief::*act)();
    };
    static constexpr std::array choices{
        Choice{ 20, &Mischief::createFile },
        Choice{ 12, &Mischief::changeFile },
        Choice{ 10, &Mischief::saveAsEditorsDo },
        Choice{ 14, &Mischief::renameInPlace },
        Choice{ 12, &Mischief::moveElsewhere },
        Choice{ 4, &Mischief::exchangeTwo },
        Choice{ 4, &Mischief::linkHard },
        Choice{ 4, &Mischief::linkSymbolically },
        Choice{ 4, &Mischief::changeMode },
        Choice{ 14, &Mischief::deleteFile },
        Choice{ 6, &Mischief::makeFolder },
        Choice{ 3, &Mischief::deleteFolder },
        Choice{ 2, &Mischief::renameTopFolder },
        Choice{ 2, &Mischief::moveTopFolderAway },
        Choice{ 1, &Mischief::deleteTopFolder },
    };
    unsigned total = 0;
    for (const auto& choice : choices)
        total += choice.weight;
    auto drawn = below(total);
    for (const auto& choice : choices) {
        if (drawn < choice.weight)
            return (this->*choice.act)();
        drawn -= choice.weight;
    }
}

std::vector<std::string> Mischief::entriesOf(const std::string& folder) const
{
    std::vector<std::string> entries;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        entries.push_back(entry->path().string());
    // The order of a file system is not the same on all of them; a seed's meaning should be.
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::string Mischief::anyTopFolder()
{
    auto entries = entriesOf(_root);
    std::erase_if(entries, [](const std::string& path) { return !isFolder(path); });
    return entries.empty() ? _root : entries[below(entries.size())];
}

std::string Mischief::anyFolder()
{
    auto folder = anyTopFolder();
    while (below(3) == 0) {
        auto entries = entriesOf(folder);
        std::erase_if(entries, [](const std::string& path) { return !isFolder(path); });
        if (entries.empty())
            break;
        folder = entries[below(entries.size())];
    }
    return folder;
}

std::string Mischief::anyFile()
{
    auto entries = entriesOf(anyFolder());
    std::erase_if(entries, isFolder);
    return entries.empty() ? std::string() : entries[below(entries.size())];
}

std::string Mischief::freshName()
{
    static constexpr std::array<const char*, 4> stems{ "a", "name with blanks", "\xff\xfe",
        "x\ny" };
    return stems[below(stems.size())] + std::to_string(below(40));
}

void Mischief::createFile()
{
    write(freshPath(), "new", std::ios::trunc);
}

void Mischief::changeFile()
{
    const auto file = anyFile();
    if (!file.empty() && fs::is_regular_file(fs::symlink_status(file)))
        write(file, "more", below(2) ? std::ios::app : std::ios::trunc);
}

void Mischief::saveAsEditorsDo()
{
    const auto file = anyFile();
    if (file.empty())
        return;
    const auto temporary = parentOf(file) + "/.save~";
    write(temporary, "saved", std::ios::trunc);
    std::rename(temporary.c_str(), file.c_str());
}

void Mischief::renameInPlace()
{
    const auto folder = anyFolder();
    const auto entries = entriesOf(folder);
    if (!entries.empty())
        std::rename(entries[below(entries.size())].c_str(), (folder + "/" + freshName()).c_str());
}

void Mischief::moveElsewhere()
{
    const auto entries = entriesOf(anyFolder());
    if (!entries.empty())
        std::rename(entries[below(entries.size())].c_str(), freshPath().c_str());
}

void Mischief::exchangeTwo()
{
    const auto one = anyFile();
    const auto other = anyFile();
    if (!one.empty() && !other.empty())
        ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
}

void Mischief::linkHard()
{
    const auto file = anyFile();
    struct stat stat;
    if (file.empty() || ::link(file.c_str(), freshPath().c_str()) != 0)
        return;
    if (::lstat(file.c_str(), &stat) == 0)
        _linkedFiles.push_back(stat.st_ino);
}

void Mischief::linkSymbolically()
{
    (void)::symlink(below(2) ? "nowhere" : anyFolder().c_str(), freshPath().c_str());
}

void Mischief::changeMode()
{
    const auto file = anyFile();
    if (!file.empty() && fs::is_regular_file(fs::symlink_status(file)))
        ::chmod(file.c_str(), below(2) ? 0644 : 0600);
}

void Mischief::deleteFile()
{
    const auto file = anyFile();
    if (!file.empty())
        ::unlink(file.c_str());
}

void Mischief::makeFolder()
{
    ::mkdir(freshPath().c_str(), 0755);
}

void Mischief::deleteFolder()
{
    const auto folder = anyFolder();
    std::error_code error;
    if (parentOf(folder) != _root)
        fs::remove_all(folder, error);
}

void Mischief::renameTopFolder()
{
    std::rename(anyTopFolder().c_str(), (_root + "/" + freshName()).c_str());
}

void Mischief::moveTopFolderAway()
{
    const auto folder = anyTopFolder();
    if (below(2))
        std::rename(folder.c_str(), freshPath().c_str());
    else
        std::rename(anyFolder().c_str(), (_root + "/" + freshName()).c_str());
}

void Mischief::deleteTopFolder()
{
    std::error_code error;
    if (entriesOf(_root).size() > 3)
        fs::remove_all(anyTopFolder(), error);
}
