// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

/// Folders whose entries and failures a test decides; stands in for the shared catalog while it
/// lives.
///
/// A folder is found by the numbers of the reference, wherever it is. Names may hold any byte, '/'
/// too. What the test changes while an iterator is in use shows in its next read. Any thread.
class FakeCatalog final : public zef::Catalog {
public:
    /// Called before each read, with the number of reads that went before it; may change the
    /// catalog.
    using ReadHook = std::function<void(std::size_t reads)>;

    FakeCatalog();
    ~FakeCatalog() override;
    FakeCatalog(const FakeCatalog&) = delete;
    FakeCatalog& operator=(const FakeCatalog&) = delete;

    /// Makes an object at `url`, without entries; `stat` says whether it is a folder.
    void add(const zef::FileURL& url, const zef::Stat& stat);
    /// Appends an entry that is told as `stat` has it.
    void addEntry(const zef::FileURL& folder, std::string_view name, const zef::Stat& stat);
    void removeEntry(const zef::FileURL& folder, std::string_view name);
    void move(const zef::FileURL& from, const zef::FileURL& to);
    void remove(const zef::FileURL& folder);

    /// Opening the folder fails with `result` from now on; `none` ends it.
    void setOpenResult(const zef::FileURL& folder, zef::FileError result);
    /// Reading the folder fails with `result` once `entries` were delivered.
    void setReadResult(const zef::FileURL& folder, zef::FileError result, std::size_t entries = 0);
    /// Counting the folder's entries fails with `result`.
    void setCountResult(const zef::FileURL& folder, zef::FileError result);
    void setReadHook(ReadHook);

    std::size_t openCount() const;
    std::size_t countingCount() const;

    zef::CatalogIterator::Opened openIterator(
        const zef::FSRef* ref, const zef::FileURL& folder) override;
    zef::Expected<std::size_t> countEntries(
        const zef::FSRef* ref, const zef::FileURL& folder) override;

private:
    class Iterator;
    struct Object;

    zef::Expected<std::shared_ptr<Object>> find(const zef::FSRef* ref) const;
    Object& objectAt(const zef::FileURL& url) const;
    zef::FileError read(Object&, std::size_t& position, std::size_t& delivered, zef::KnownEntries*,
        std::span<zef::CatalogEntry> entries, std::size_t& count);
    ReadHook readHook() const;

    mutable std::mutex _mutex;
    std::vector<std::shared_ptr<Object>> _objects;
    ReadHook _readHook;
    std::size_t _openCount = 0;
    std::size_t _countingCount = 0;
};
