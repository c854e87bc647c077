// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <map>
#include <set>
#include <string>
#include <vector>

/// A subscriber to one folder that checks every record against the rules and, when nobody changes
/// anything, what is known against what is on disk.
class WatchedFolder final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
public:
    /// `filesWithSeveralNames` are the numbers of the files that have, or had, several names;
    /// borrowed for as long as this lives.
    WatchedFolder(
        zef::Ref<ZEFFileItem> folder, const std::set<std::uint64_t>& filesWithSeveralNames);

    ZEFDirectorySubscription& subscription() { return *_subscription; }
    /// NO also when the subscription of the folder above found this one lost first; then this
    /// one's own subscription never hears of it.
    bool isValid() const { return _subscription->isValid() && _folder->isValid(); }

    /// First half of a poll, and the second.
    void check();
    void notify();

    /// Whether the last poll told of a change of the folder, and so looked at every file.
    bool sawFolderChange() const { return _sawFolderChange; }

    /// Compares with the folder on disk, which nobody must be changing.
    void expectToEqualDisk();

    /// Compares the records of the last poll with what had changed on disk since the last
    /// `expectToEqualDisk`.
    void expectRecordsToTellChanges();

    void directorySubscriptionFoundChanges(
        ZEFDirectorySubscription*, ZEFChangeArray* changes) override;

protected:
    ~WatchedFolder() override;

private:
    struct Seen {
        zef::Ref<ZEFFileItem> item;
        std::string name;
        double modificationTime;
        double statusChangeTime;
        bool isSingleName;
        bool isFolder;
    };
    using Listing = std::map<std::pair<std::uint64_t, std::int64_t>, Seen>;

    Listing listing();
    void checkRecord(const ZEFChangeRecord&);
    void checkOrder(const ZEFChangeArray&) const;
    std::size_t recordsOf(const ZEFFileItem*, ZEFFileEvent) const;
    void expectRecordsOf(const Seen& before, const Listing& now) const;

    zef::Ref<ZEFFileItem> _folder;
    zef::Ref<ZEFDirectorySubscription> _subscription;
    zef::Ref<ZEFChangeArray> _pending;
    std::map<const ZEFFileItem*, zef::Ref<ZEFFileItem>> _known;
    std::vector<zef::Ref<ZEFChangeRecord>> _lastRecords;
    Listing _lastListing;
    const std::set<std::uint64_t>& _filesWithSeveralNames;
    bool _sawFolderChange = false;
};
