// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Objects/Array.h"
#include "ZEFFilesystemTools/Platform/Objects/Class.h"
#include "ZEFFilesystemTools/Platform/Objects/Ref.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <string>
#include <string_view>

class ZEFArchiveDictionary;
class ZEFFileItem;

/// A class of file items as a value: the factory of the one canonical item of each file.
///
/// A host adds a class of its own with a subclass of `ZEFFileItem` that has the constructor of
/// `ZEFFileItem` and one line:
/// `const ZEFFileItemClass MyItem::classObject("MyItem", &ZEFFileItem::classObject,
/// ZEFFileItemClass::initializer<MyItem>);`. Any thread.
class ZEF_EXPORT ZEFFileItemClass : public zef::Class {
public:
    /// Makes an instance, or yields null. Called by the factory alone, on the asking thread, with
    /// the registry locked: it must not ask a factory for items.
    using Initializer = zef::Ref<ZEFFileItem> (*)(const zef::FileURL& url, const zef::FSRef* fsRef,
        const zef::FileURL& pathRep, const zef::Stat* statInfo);

    /// Finds the file of an archive, for a class whose items keep keys of their own there. The item
    /// comes from the factory of `receiver`, the class that was asked: the reader's own or a
    /// subclass. May yield null.
    using ArchiveReader = zef::Ref<ZEFFileItem> (*)(
        const ZEFFileItemClass& receiver, const ZEFArchiveDictionary& dictionary);

    /// Without `archiveReader` the class reads archives as its superclass does.
    constexpr ZEFFileItemClass(const char* className, const zef::Class* superclassObject,
        Initializer initWithURL, ArchiveReader archiveReader = nullptr)
        : zef::Class{ className, superclassObject }
        , _initWithURL(initWithURL)
        , _readArchive(archiveReader)
    {
    }

    template <typename Item>
    static zef::Ref<ZEFFileItem> initializer(const zef::FileURL& url, const zef::FSRef* fsRef,
        const zef::FileURL& pathRep, const zef::Stat* statInfo)
    {
        return zef::makeRef<Item>(url, fsRef, pathRep, statInfo);
    }

    /// The item of the file at `url`, links not followed: the one that exists already, of whatever
    /// class, or a new one of this class. Null if there is no such file or `url` is null. `ref`
    /// (borrowed, may be null) is taken for the reference of a new item.
    zef::Ref<ZEFFileItem> newFileItemForURLFsRef(
        const zef::FileURL& url, const zef::FSRef* ref) const;
    zef::Ref<ZEFFileItem> newFileItemForURL(const zef::FileURL& url) const;

    /// The item of the file at `path`; its URL ends in a slash even if that is not a folder.
    /// Null for null, for an empty path and if there is no such file.
    zef::Ref<ZEFFileItem> newFileItemForPath(std::string_view path) const;
    zef::Ref<ZEFFileItem> newFileItemForPath(std::nullptr_t) const;

    /// The item of the file that `ref` refers to; null if that is gone or can't be found.
    zef::Ref<ZEFFileItem> newFileItemForFSRef(const zef::FSRef* ref) const;

    /// The item of the file that `dictionary`, made by `archiveDictionary` in this run of the
    /// program or an earlier one, leads to. Null for null, and if neither its data nor its path
    /// leads to a file or the data are empty.
    zef::Ref<ZEFFileItem> newFileItemForArchiveDictionary(
        const ZEFArchiveDictionary* dictionary) const;
    /// The same as this class reads archives, with `receiver` in the role of the class that was
    /// asked: what a subclass's reader calls for its superclass's way.
    zef::Ref<ZEFFileItem> readArchive(
        const ZEFFileItemClass& receiver, const ZEFArchiveDictionary& dictionary) const;

    // Whole arrays. Null for null; otherwise what the elements yield, in order, without those that
    // yield nothing. `zef::MutationError` if the array is changed meanwhile.
    zef::Ref<zef::Array<ZEFArchiveDictionary>> archiveDictionariesForFileItems(
        const zef::Array<ZEFFileItem>* items) const;
    zef::Ref<zef::Array<ZEFFileItem>> fileItemsForArchiveDictionaries(
        const zef::Array<ZEFArchiveDictionary>* dictionaries) const;
    /// As last seen, without a look at the disk.
    zef::Ref<zef::Array<zef::FileURL>> urlsForFileItems(const zef::Array<ZEFFileItem>* items) const;
    zef::Ref<zef::Array<ZEFFileItem>> fileItemsForURLs(const zef::Array<zef::FileURL>* urls) const;
    /// As last seen, without a look at the disk.
    zef::Ref<zef::Array<std::string>> pathsForFileItems(const zef::Array<ZEFFileItem>* items) const;
    zef::Ref<zef::Array<ZEFFileItem>> fileItemsForPaths(const zef::Array<std::string>* paths) const;

    /// For listings, which have looked at the file already: the item of the file at `url` that
    /// `stat` describes, without a further look at the disk. It takes nothing that would find the
    /// file after a move; the item does so itself when somebody begins to follow it.
    zef::Ref<ZEFFileItem> ZEF_newFileItemForEntry(
        const zef::FileURL& url, const zef::FSRef& ref, const zef::Stat& stat) const;

private:
    class Request;

    Initializer _initWithURL;
    ArchiveReader _readArchive;
};
