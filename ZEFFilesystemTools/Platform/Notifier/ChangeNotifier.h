// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>

namespace zef {

/// Says whether something happened to an object since it was last asked, without ever waiting.
///
/// One inotify instance serves the whole process (inotify(7)). Where it can't (remote and FUSE file
/// systems, the limit on watches reached, no permission to read), a token compares time stamps
/// instead. Soon after a change of the stamps the next poll then reports once more, because a
/// second change may have got the same ones. After lost events every token reports something, so
/// that no change is ever missed.
///
/// A folder's own events are entries that come, go or get another name, and changes of its
/// attributes; what happens to or in an entry is an event of that entry. A store into memory that
/// is mapped from a file is not an event, and shows in its time stamps only when the system writes
/// it back.
///
/// Any thread; the child of a fork must not use it.
class ChangeNotifier : public SharedService<ChangeNotifier> {
public:
    virtual ~ChangeNotifier() = default;

    static ChangeNotifier& system();

    /// Makes sure that there is a queue; a number of 0 or more, or -1 if there can be none.
    virtual int createQueue() = 0;

    /// Watches the object that `ref` refers to, last seen at `url`, or whatever is at `url` when
    /// `ref` is empty; the token to ask with, or 0 if the object does not exist. Each token needs
    /// one `close`, even if the object goes.
    virtual int open(const FSRef& ref, const FileURL& url) = 0;

    /// How many events there are to report for the token: 1 if something happened since the last
    /// call, 0 if nothing did, -1 with errno for a token that is not open. `url` is where the
    /// object was last seen.
    virtual int poll(int token, const FSRef& ref, const FileURL& url) = 0;

    virtual void close(int token) = 0;

    /// Between `beginRound` and `endRound`, which nest, the calling thread's polls read the
    /// system's queue no more than once, at the beginning: what happens later is reported in the
    /// next round. A round is ended on the thread that began it.
    virtual void beginRound() = 0;
    virtual void endRound() = 0;

    /// How many watches may be used at most, beside the system's own limit.
    virtual void setWatchLimit(std::size_t) = 0;

    /// Keeps a round open for as long as it lives.
    class Round {
    public:
        Round() { _notifier.beginRound(); }
        ~Round() { _notifier.endRound(); }
        Round(const Round&) = delete;
        Round& operator=(const Round&) = delete;

    private:
        ChangeNotifier& _notifier = ChangeNotifier::shared();
    };
};

} // namespace zef
