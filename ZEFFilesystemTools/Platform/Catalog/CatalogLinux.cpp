// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"

#include "ZEFFilesystemTools/Platform/Catalog/FolderReader.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"

#include <cerrno>

namespace zef {
namespace {

FileError resultOfOpening(int error)
{
    return error == EINVAL ? FileError::badReference : fileErrorOfErrno(error);
}

class KernelCatalogIterator final : public CatalogIterator {
public:
    FileError open(const FSRef& ref, const FileURL& folder)
    {
        const int error = _reader.open(ref, folder);
        if (error)
            return resultOfOpening(error);
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

    FileError openSubfolder(const CatalogEntry& entry, const FileURL& url,
        std::unique_ptr<CatalogIterator>& iterator) override
    {
        auto opened = std::make_unique<KernelCatalogIterator>();
        if (opened->openIn(*this, entry, url) == 0) {
            iterator = std::move(opened);
            return FileError::none;
        }
        return CatalogIterator::openSubfolder(entry, url, iterator);
    }

    void suspend() override { _reader.suspend(); }

    void resumeFrom(CatalogIterator& subfolder) override
    {
        if (auto* below = dynamic_cast<KernelCatalogIterator*>(&subfolder))
            _reader.resumeFrom(below->_reader);
    }

    void setKnownEntries(KnownEntries* known) override { _knownEntries = known; }

    FileError count(std::size_t& count)
    {
        const auto entryCount = _reader.countRest();
        if (_reader.error())
            return fileErrorOfErrno(_reader.error());
        count = entryCount;
        return FileError::none;
    }

private:
    // What is on one device is of one type.
    int openIn(KernelCatalogIterator& parent, const CatalogEntry& entry, const FileURL& url)
    {
        const int error = _reader.openIn(parent._reader, entry.nameBytes.data(), entry.ref, url);
        if (error)
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

    // NO for an entry that is gone already.
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

class KernelCatalog final : public Catalog {
public:
    FileError openIterator(const FSRef* ref, const FileURL& folder,
        std::unique_ptr<CatalogIterator>& iterator) override
    {
        iterator.reset();
        auto opened = std::make_unique<KernelCatalogIterator>();
        const auto result = opened->open(ref ? *ref : FSRef(), folder);
        if (result == FileError::none)
            iterator = std::move(opened);
        return result;
    }

    FileError countEntries(const FSRef* ref, const FileURL& folder, std::size_t& count) override
    {
        count = 0;
        FolderReader reader;
        const int error = reader.open(ref ? *ref : FSRef(), folder);
        if (error)
            return resultOfOpening(error);
        std::size_t read = 0;
        FolderReader::Entry entry;
        while (reader.next(entry))
            ++read;
        if (reader.error())
            return fileErrorOfErrno(reader.error());
        count = read;
        return FileError::none;
    }

    FileError countEntriesAndKeep(const FSRef* ref, const FileURL& folder, std::size_t& count,
        std::unique_ptr<CatalogIterator>& iterator) override
    {
        count = 0;
        iterator.reset();
        auto opened = std::make_unique<KernelCatalogIterator>();
        auto result = opened->open(ref ? *ref : FSRef(), folder);
        if (result == FileError::none)
            result = opened->count(count);
        if (result == FileError::none)
            iterator = std::move(opened);
        return result;
    }
};

} // namespace

FileError CatalogIterator::openSubfolder(
    const CatalogEntry& entry, const FileURL& url, std::unique_ptr<CatalogIterator>& iterator)
{
    return Catalog::shared().openIterator(&entry.ref, url, iterator);
}

FileError Catalog::countEntriesAndKeep(const FSRef* ref, const FileURL& folder, std::size_t& count,
    std::unique_ptr<CatalogIterator>& iterator)
{
    iterator.reset();
    return countEntries(ref, folder, count);
}

Catalog& Catalog::system()
{
    static auto& catalog = *new KernelCatalog; // never destroyed: late threads may still ask
    return catalog;
}

} // namespace zef
