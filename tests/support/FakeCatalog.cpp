// SPDX-License-Identifier: MIT
#include "tests/support/FakeCatalog.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

// Entries keep their positions, so that those that come and go move no reader.
struct FakeCatalog::Object {
    struct Entry {
        std::string name;
        zef::Stat stat;
        bool isRemoved = false;
    };

    zef::FileURL url;
    zef::Stat stat;
    bool isRemoved = false;
    std::vector<Entry> entries;
    zef::FileError openResult = zef::FileError::none;
    zef::FileError countResult = zef::FileError::none;
    zef::FileError readResult = zef::FileError::none;
    std::size_t readableEntries = 0;
};

class FakeCatalog::Iterator final : public zef::CatalogIterator {
public:
    Iterator(FakeCatalog& catalog, std::shared_ptr<Object> folder)
        : _catalog(catalog)
        , _folder(std::move(folder))
    {
    }

    zef::FileError next(std::span<zef::CatalogEntry> entries, std::size_t& count) override
    {
        if (const auto hook = _catalog.readHook())
            hook(_reads);
        ++_reads;
        count = 0;
        return _catalog.read(*_folder, _position, _delivered, _knownEntries, entries, count);
    }

    void setKnownEntries(zef::KnownEntries* known) override { _knownEntries = known; }

private:
    FakeCatalog& _catalog;
    std::shared_ptr<Object> _folder;
    zef::KnownEntries* _knownEntries = nullptr;
    std::size_t _reads = 0;
    std::size_t _position = 0;
    std::size_t _delivered = 0;
};

namespace {

void fill(zef::CatalogEntry& entry, std::string_view name, const zef::Stat& stat,
    std::uint64_t folderInode)
{
    name.copy(entry.nameBytes.data(), entry.nameBytes.size());
    entry.nameLength = name.size();
    entry.isFolder = stat.isFolder();
    entry.stat = stat;
    entry.ref = zef::FSRef(stat, folderInode);
}

} // namespace

FakeCatalog::FakeCatalog()
{
    replaceShared(this);
}

FakeCatalog::~FakeCatalog()
{
    replaceShared(nullptr);
}

void FakeCatalog::add(const zef::FileURL& url, const zef::Stat& stat)
{
    std::lock_guard lock(_mutex);
    auto object = std::make_shared<Object>();
    object->url = url;
    object->stat = stat;
    _objects.push_back(std::move(object));
}

void FakeCatalog::addEntry(const zef::FileURL& folder, std::string_view name, const zef::Stat& stat)
{
    std::lock_guard lock(_mutex);
    if (name.size() >= zef::CatalogEntry().nameBytes.size())
        throw std::length_error("a name of more than 255 bytes");
    objectAt(folder).entries.push_back({ std::string(name), stat });
}

void FakeCatalog::removeEntry(const zef::FileURL& folder, std::string_view name)
{
    std::lock_guard lock(_mutex);
    for (auto& entry : objectAt(folder).entries)
        entry.isRemoved |= entry.name == name;
}

void FakeCatalog::move(const zef::FileURL& from, const zef::FileURL& to)
{
    std::lock_guard lock(_mutex);
    objectAt(from).url = to;
}

void FakeCatalog::remove(const zef::FileURL& folder)
{
    std::lock_guard lock(_mutex);
    auto& object = objectAt(folder);
    object.entries.clear();
    object.isRemoved = true;
}

void FakeCatalog::setOpenResult(const zef::FileURL& folder, zef::FileError result)
{
    std::lock_guard lock(_mutex);
    objectAt(folder).openResult = result;
}

void FakeCatalog::setReadResult(
    const zef::FileURL& folder, zef::FileError result, std::size_t entries)
{
    std::lock_guard lock(_mutex);
    auto& object = objectAt(folder);
    object.readResult = result;
    object.readableEntries = entries;
}

void FakeCatalog::setCountResult(const zef::FileURL& folder, zef::FileError result)
{
    std::lock_guard lock(_mutex);
    objectAt(folder).countResult = result;
}

void FakeCatalog::setReadHook(ReadHook hook)
{
    std::lock_guard lock(_mutex);
    _readHook = std::move(hook);
}

std::size_t FakeCatalog::openCount() const
{
    std::lock_guard lock(_mutex);
    return _openCount;
}

std::size_t FakeCatalog::countingCount() const
{
    std::lock_guard lock(_mutex);
    return _countingCount;
}

zef::CatalogIterator::Opened FakeCatalog::openIterator(const zef::FSRef* ref, const zef::FileURL&)
{
    std::lock_guard lock(_mutex);
    ++_openCount;
    auto folder = find(ref);
    if (!folder)
        return folder.error();
    return zef::CatalogIterator::Opened(std::make_unique<Iterator>(*this, *std::move(folder)));
}

zef::Expected<std::size_t> FakeCatalog::countEntries(const zef::FSRef* ref, const zef::FileURL&)
{
    std::lock_guard lock(_mutex);
    ++_countingCount;
    const auto found = find(ref);
    if (!found)
        return found.error();
    const auto& folder = **found;
    for (const auto error : { folder.countResult, folder.readResult }) {
        if (error != zef::FileError::none)
            return error;
    }
    const auto removed = std::count_if(folder.entries.begin(), folder.entries.end(),
        [](const auto& entry) { return entry.isRemoved; });
    return folder.entries.size() - static_cast<std::size_t>(removed);
}

// The folder; fails as the test said that opening it does.
zef::Expected<std::shared_ptr<FakeCatalog::Object>> FakeCatalog::find(const zef::FSRef* ref) const
{
    if (!ref || ref->isEmpty())
        return zef::FileError::badReference;
    for (const auto& object : _objects) {
        if (object->isRemoved || !ref->hasNumbersOf(object->stat))
            continue;
        if (!object->stat.isFolder())
            return zef::FileError::notAFolder;
        if (object->openResult != zef::FileError::none)
            return object->openResult;
        return object;
    }
    return zef::FileError::notFound;
}

FakeCatalog::Object& FakeCatalog::objectAt(const zef::FileURL& url) const
{
    for (const auto& object : _objects) {
        if (object->url == url && !object->isRemoved)
            return *object;
    }
    throw std::out_of_range(url.absoluteString());
}

// An error behind entries that were read waits for the next call.
zef::FileError FakeCatalog::read(Object& folder, std::size_t& position, std::size_t& delivered,
    zef::KnownEntries* known, std::span<zef::CatalogEntry> entries, std::size_t& count)
{
    std::lock_guard lock(_mutex);
    while (count < entries.size()) {
        const bool isFailing = folder.isRemoved
            || (folder.readResult != zef::FileError::none && delivered >= folder.readableEntries);
        if (isFailing && count)
            return zef::FileError::none;
        if (isFailing)
            return folder.isRemoved ? zef::FileError::notFound : folder.readResult;
        if (position >= folder.entries.size())
            return zef::FileError::noMoreItems;
        const auto& entry = folder.entries[position++];
        if (entry.isRemoved || (known && known->isKnown(entry.name, entry.stat.inode)))
            continue;
        fill(entries[count++], entry.name, entry.stat, folder.stat.inode);
        ++delivered;
    }
    return zef::FileError::none;
}

FakeCatalog::ReadHook FakeCatalog::readHook() const
{
    std::lock_guard lock(_mutex);
    return _readHook;
}
