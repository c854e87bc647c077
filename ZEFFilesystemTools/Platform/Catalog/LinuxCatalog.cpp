// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"
#include "ZEFFilesystemTools/Platform/Catalog/FolderReader.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"

#include <cerrno>

namespace zef {
namespace {

FileError errorOfOpening(int error)
{
    return error == EINVAL ? FileError::badReference : fileErrorOfErrno(error);
}

class LinuxCatalogIterator final : public CatalogIterator {
public:
    FileError open(const FSRef& ref, const FileURL& folder)
    {
        if (const int error = _reader.open(ref, folder))
            return errorOfOpening(error);
        begin(ref, !keepsBirthTimes(fileSystemType(_reader.folder())));
        return FileError::none;
    }

    FileError next(std::span<CatalogEntry> entries, std::size_t& count) override
    {
        count = 0;
        FolderReader::Entry raw;
        while (count < entries.size()) {
            if (_reader.isExhausted() || !_reader.resume() || !_reader.next(raw))
                return end(count);
            if (_knownEntries && _knownEntries->isKnown({ raw.name, raw.nameLength }, raw.inode))
                continue;
            if (fill(entries[count], raw))
                ++count;
        }
        return FileError::none;
    }

    Opened openSubfolder(const CatalogEntry& entry, const FileURL& url) override
    {
        auto opened = std::make_unique<LinuxCatalogIterator>();
        if (opened->openIn(*this, entry, url) == 0)
            return Opened(std::move(opened));
        return CatalogIterator::openSubfolder(entry, url);
    }

    void suspend() override { _reader.suspend(); }

    void resumeFrom(CatalogIterator& subfolder) override
    {
        if (auto* below = dynamic_cast<LinuxCatalogIterator*>(&subfolder))
            _reader.resumeFrom(below->_reader);
    }

    void setKnownEntries(KnownEntries* known) override { _knownEntries = known; }

    Expected<std::size_t> count()
    {
        const auto count = _reader.countRest();
        if (_reader.error())
            return fileErrorOfErrno(_reader.error());
        return count;
    }

private:
    // What is on one device is of one type.
    int openIn(LinuxCatalogIterator& parent, const CatalogEntry& entry, const FileURL& url)
    {
        if (const int error = _reader.openIn(
                parent._reader, entry.nameBytes.data(), entry.ref, url))
            return error;
        begin(entry.ref,
            entry.ref.device() == parent._device
                ? parent._needsHandles
                : !keepsBirthTimes(fileSystemType(_reader.folder())));
        return 0;
    }

    void begin(const FSRef& ref, bool needsHandles)
    {
        _device = ref.device();
        _folderInode = ref.inode();
        _needsHandles = needsHandles;
    }

    // An error behind entries that were read waits for the next call.
    FileError end(std::size_t count) const
    {
        if (!_reader.error())
            return FileError::noMoreItems;
        return count ? FileError::none : fileErrorOfErrno(_reader.error());
    }

    // False for an entry that is gone already.
    bool fill(CatalogEntry& entry, const FolderReader::Entry& raw)
    {
        if (raw.nameLength >= entry.nameBytes.size()
            || statAt(_reader.folder(), raw.name, entry.stat) != 0)
            return false;
        entry.nameLength = raw.nameLength;
        std::string_view(raw.name, raw.nameLength).copy(entry.nameBytes.data(), raw.nameLength);
        entry.nameBytes[raw.nameLength] = '\0';
        entry.isFolder = entry.stat.isFolder();
        entry.ref = FSRef(entry.stat, _folderInode);
        if (_needsHandles)
            entry.ref.setHandle(handleAt(_reader.folder(), raw.name));
        return true;
    }

    FolderReader _reader;
    KnownEntries* _knownEntries = nullptr;
    std::uint32_t _device = 0;
    std::uint64_t _folderInode = 0;
    bool _needsHandles = false;
};

class LinuxCatalog final : public Catalog {
public:
    CatalogIterator::Opened openIterator(const FSRef* ref, const FileURL& folder) override
    {
        auto opened = std::make_unique<LinuxCatalogIterator>();
        const auto error = opened->open(ref ? *ref : FSRef(), folder);
        if (error != FileError::none)
            return error;
        return CatalogIterator::Opened(std::move(opened));
    }

    Expected<std::size_t> countEntries(const FSRef* ref, const FileURL& folder) override
    {
        FolderReader reader;
        if (const int error = reader.open(ref ? *ref : FSRef(), folder))
            return errorOfOpening(error);
        std::size_t count = 0;
        FolderReader::Entry entry;
        while (reader.next(entry))
            ++count;
        if (reader.error())
            return fileErrorOfErrno(reader.error());
        return count;
    }

    Expected<CountedFolder> countEntriesAndKeep(const FSRef* ref, const FileURL& folder) override
    {
        auto opened = std::make_unique<LinuxCatalogIterator>();
        const auto error = opened->open(ref ? *ref : FSRef(), folder);
        if (error != FileError::none)
            return error;
        const auto count = opened->count();
        if (!count)
            return count.error();
        return CountedFolder{ .count = *count, .iterator = std::move(opened) };
    }
};

} // namespace

CatalogIterator::Opened CatalogIterator::openSubfolder(
    const CatalogEntry& entry, const FileURL& url)
{
    return Catalog::shared().openIterator(&entry.ref, url);
}

Expected<Catalog::CountedFolder> Catalog::countEntriesAndKeep(
    const FSRef* ref, const FileURL& folder)
{
    const auto count = countEntries(ref, folder);
    if (!count)
        return count.error();
    return CountedFolder{ .count = *count, .iterator = nullptr };
}

Catalog& Catalog::system()
{
    return immortal<LinuxCatalog>();
}

} // namespace zef
