// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"

#include <optional>
#include <vector>

/// The load of a folder on another thread, and the timer that says when to look at what it has
/// found. Everything that belongs to a load is made in `begin` and let go in `close`. The thread of
/// the subscription.
class ZEFBackgroundLoad {
public:
    /// What a load has found and nobody has taken yet.
    struct Findings {
        std::vector<ZEFFileLoadOperation::Sighting> sightings;
        std::vector<zef::Ref<ZEFFileItem>> items;
    };

    ZEFBackgroundLoad() = default;
    /// Ends the timer alone: a load that runs goes on without its subscription.
    ~ZEFBackgroundLoad();
    ZEFBackgroundLoad(const ZEFBackgroundLoad&) = delete;
    ZEFBackgroundLoad& operator=(const ZEFBackgroundLoad&) = delete;

    /// Loads the contents of `directory`; `look` is called every now and then until `close`.
    void begin(zef::Ref<ZEFFileItem> directory, zef::Timer::Action look);
    void close();

    /// The load that runs, borrowed; null between `close` and `begin`.
    ZEFFileLoadOperation* operation() const { return _currentLoadOperation.get(); }

    /// Has the next look cancel the load. Never taken back.
    void stopAtNextLook() { _stopLoading = true; }
    bool isToStop() const { return _stopLoading; }

    /// Takes what was found so far; nothing if the loader is just adding to it. Never waits.
    std::optional<Findings> tryTake();
    /// Takes the rest of a load that is finished.
    Findings takeRest();

private:
    friend class ZEFDirectorySubscriptionTestAccess;

    zef::Ref<ZEFFileLoadOperation> _currentLoadOperation;
    zef::Ref<zef::Lock> _asyncLoadingLock;
    zef::Ref<zef::Timer> _asyncLoadingCheckTimer;
    zef::Ref<ZEFFileItemArray> _asyncLoadingQueue;
    bool _stopLoading = false;
};
