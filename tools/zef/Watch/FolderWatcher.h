// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Watch/ChangeView.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tool {

/// Subscribes to folders and writes what is reported of them. Made and let go of on the thread that
/// watches.
class FolderWatcher final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
public:
    using Write = std::function<void(const std::string&)>;

    /// `view` (borrowed) makes the text that goes to `write`.
    FolderWatcher(ChangeView& view, Write write);

    /// Watches the folder; complains when it can't. One that is watched already stays so.
    bool watch(const std::string& path);

    /// Lets go of folders that are gone; whether any is left.
    bool hasFolders();

    void directorySubscriptionFoundChanges(ZEFDirectorySubscription*, ZEFChangeArray*) override;

private:
    struct Folder {
        WatchedFolder folder;
        bool isLoading;
    };

    ~FolderWatcher() override;

    Folder* find(const ZEFDirectorySubscription*);

    ChangeView& _view;
    Write _write;
    std::vector<std::unique_ptr<Folder>> _folders;
};

} // namespace tool
