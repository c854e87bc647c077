// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// Random changes below one folder: files and folders come, go, change, and change places. What
/// can't be done is left undone.
class Mischief {
public:
    Mischief(std::string root, std::uint64_t seed)
        : _root(std::move(root))
        , _random(seed)
    {
    }

    void doSomething();

    /// The numbers of the files that were given one more name.
    const std::vector<std::uint64_t>& linkedFiles() const { return _linkedFiles; }

private:
    std::uint64_t below(std::uint64_t bound) { return bound ? _random() % bound : 0; }
    std::string anyFolder();
    std::string anyTopFolder();
    std::string anyFile();
    std::string freshName();
    std::string freshPath() { return anyFolder() + "/" + freshName(); }
    std::vector<std::string> entriesOf(const std::string& folder) const;

    void createFile();
    void changeFile();
    void saveAsEditorsDo();
    void renameInPlace();
    void moveElsewhere();
    void exchangeTwo();
    void linkHard();
    void linkSymbolically();
    void changeMode();
    void deleteFile();
    void makeFolder();
    void deleteFolder();
    void renameTopFolder();
    void moveTopFolderAway();
    void deleteTopFolder();

    std::string _root;
    std::mt19937_64 _random;
    std::vector<std::uint64_t> _linkedFiles;
};
