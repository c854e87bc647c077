// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFChangeRecord.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileChanges.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileInfoList.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItemClass.h"
#include "ZEFFilesystemTools/Platform/Threads/AtomicFlags.h"
#include "ZEFFilesystemTools/Platform/Threads/ByteLock.h"
#include "ZEFFilesystemTools/Platform/Time/Date.h"

#include <limits>
#include <memory>
#include <optional>

class ZEFFileTable;
namespace zef {
class PinnedFolder;
}

/// The one canonical object of a file, folder or link on disk. It stays attached to its file while
/// that is renamed or moved, and reports to each observer what changed since it last asked.
///
/// Items come from a class object. An item belongs to one thread at a time; any thread may ask for
/// `isValid`, the numbers, the two marks, `url` and for copies of references.
class ZEF_EXPORT ZEFFileItem : public ZEFObject {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    /// Called by the factory through the class object, with the registry locked. `fsRef`, `pathRep`
    /// (the location that was looked at) and `statInfo` may be null.
    ZEFFileItem(const zef::FileURL& url, const zef::FSRef* fsRef, const zef::FileURL& pathRep,
        const zef::Stat* statInfo);

    // Identity, fixed when the item is made; a copy is the item itself.
    std::size_t hash() const override;
    /// True if `other` is an item of this one's class, or of a subclass, with the same numbers.
    bool isEqual(const ZEFObject* other) const override;
    std::uint32_t fileDeviceNumber() const { return _deviceNumber; }
    std::uint64_t fileiNode() const { return _iNode; }
    std::uint64_t fileiNodeHash() const; ///< The item's key in the registry.
    /// True if mode bit 0x4000 was set: folders, packages, sockets.
    bool isBasicDirectory() const { return _marks & basicDirectoryMark; }
    bool isSymlink() const { return _marks & symlinkMark; } ///< Itself, whatever it leads to.
    zef::Ref<ZEFObject> copy() override;
    std::string description() const override;

    // As last seen, without a look at the disk; null for a lost file. Pointers are borrowed
    // until the location changes.
    /// False once the file was found lost; it never becomes valid again.
    bool isValid() const { return _state.has(validState); }
    zef::FileURL url() const;
    const std::string* path();
    zef::PathBuffer filesystemRepresentation(); ///< Null also if longer than PATH_MAX allows.
    const zef::FSRef* fsRef() const;
    bool refValid() const { return _state.has(refValidState); } ///< True if there is an `fsRef`.
    /// The date last seen through the item itself, kept until a change is seen.
    std::optional<zef::Date> modificationDate();

    // Now: these look at the disk.
    zef::FileURL currentURL(); ///< Where the file is, found again if moved; null if it is lost.
    std::optional<std::string> currentPath();
    zef::PathBuffer currentFilesystemRepresentation();
    /// After a look at the remembered path alone; null if nobody asked before and nothing changed.
    std::optional<zef::Date> currentModificationDate();

    // Kernel queue, asked instead of time stamps until `endKQueue`; `initKQueue` begins anew.
    void initKQueue();
    void endKQueue();
    bool usingKQueue() const { return _kernelQueue >= 0; }
    void ZEF_checkKQueue();

    // Observers: any objects, not retained, told apart by identity. Never the item itself.
    /// Both return false if there is nothing to do: it is, or is not, registered already.
    bool registerFileObserver(const ZEFObject* observer);
    bool removeFileObserver(const ZEFObject* observer);
    /// What happened since `observer` last asked; its first question registers it.
    ZEFFileChanges changesForObserver(const ZEFObject* observer);
    /// Asks for a registered observer; true, and `updateForEvent` is sent, if something happened.
    bool updateForObserver(const ZEFObject* observer);
    void eventOccurred(const ZEFChangeRecord*); ///< Sends `updateForEvent`.
    virtual void updateForEvent(const ZEFChangeRecord*); ///< For subclasses: something happened.

    // Archives; the class object reads them.
    /// Leads a later run of the program to the file; null if the item is lost or has no reference.
    zef::Ref<ZEFArchiveDictionary> archiveDictionary();
    /// For subclasses: adds the item's keys; called by `archiveDictionary`.
    virtual void loadDataIntoArchive(ZEFArchiveDictionary* dictionary);

    // For the library.
    void ZEF_setContainer(ZEFFileTable*);
    ZEFFileTable* ZEF_container() const { return _container.load(std::memory_order_acquire); }
    /// True if `stat`, just taken at `where`, is of this very file. Any thread.
    bool ZEF_isSameObject(const zef::Stat& stat, const zef::FileURL& where) const;
    /// The same as `changesForObserver`; looks by way of `folder` unless that is null.
    ZEFFileChanges ZEF_changesForObserver(const ZEFObject* observer, const zef::PinnedFolder*);
    /// The same, but a change of the path is left for the next question.
    ZEFFileChanges ZEF_modificationForObserver(const ZEFObject* observer);
    /// The file was seen at `url`: takes that for its location if it is no longer at its own.
    void ZEF_seenAtURL(const zef::FileURL& url);
    /// True if `other` is of another file that has, or had, the same numbers. Any thread.
    bool ZEF_isAnotherObject(const ZEFFileItem& other) const;
    /// True if `url` has the path of its location, whatever their marks. Any thread.
    bool ZEF_hasPathOf(const zef::FileURL& url) const;
    /// Takes what finds the file again after a move, unless that was done. Any thread.
    void ZEF_keepReference();
    [[nodiscard]] bool ZEF_copyReference(zef::FSRef&) const; ///< False without `fsRef`. Any thread.
    /// Where the file is now, without a change to the item; null if it is lost. Any thread.
    zef::FileURL ZEF_locate() const;

protected:
    ~ZEFFileItem() override;
    void dealloc() noexcept override;

private:
    enum Mark : std::uint8_t { basicDirectoryMark = 1, symlinkMark = 2 };
    enum State : std::uint8_t { validState = 1, refValidState = 2, referenceKeptState = 4 };
    void takeStat(const zef::Stat&);
    void takeReference(const zef::FSRef*, const zef::Stat*);
    zef::FSRef identity() const;
    zef::FSRef referenceCopy() const;
    void setLocation(const zef::FileURL&);
    void becomeLost();
    void giveUpReference();
    zef::FileURL resolveReference();
    bool isSeenAt(const zef::FileURL&, const zef::PinnedFolder*, zef::Stat&) const;
    void makeOwnPath();
    ZEFFileInfoList* recordForObserver(const ZEFObject*);
    ZEFFileInfoList* appendRecord(const ZEFObject*);
    ZEFFileInfoList* askableRecord(const ZEFObject*);
    void look(ZEFFileInfoList&, ZEFFileChanges&, const zef::PinnedFolder*);
    void followMove(ZEFFileInfoList&, ZEFFileChanges&);

    // Ordered by size: a listing of a large folder makes one of these an entry.
    std::uint32_t _deviceNumber = 0;
    std::uint64_t _iNode = 0;
    zef::FileURL _pathURL;
    std::unique_ptr<std::string> _path;
    double _modDate = std::numeric_limits<double>::quiet_NaN();
    std::atomic<ZEFFileTable*> _container{ nullptr };
    /// -1 while unused; otherwise the token of the watch, 0 when nothing could be opened.
    std::int32_t _kernelQueue = -1;
    std::uint8_t _marks = 0;
    zef::AtomicFlags<State> _state;
    /// Guards `_pathURL` and `_fsRef` against other threads' reading; only the owner changes them.
    mutable zef::ByteLock _locationLock;
    ZEFFileInfoList _pathInfo;
    zef::FSRef _fsRef;
};
