// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"

#include <cstddef>
#include <cstdint>
#include <deque>

class ZEFAsynchronousFileLoader;

// What a delegate of a loader may be: a `ZEFObject` that also inherits from one or more of these
// protocols. It is not retained: cancel the loader before its delegate dies. Objects are borrowed.
// Calls come on the thread that started the load, never after `cancel`, and may do anything with
// the loader.

/// Hears that the load has ended.
class ZEF_EXPORT ZEFAsynchronousFileLoaderDelegate {
public:
    /// Called once; `files` are all that were found.
    virtual void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader* loader, ZEFFileItemArray* files)
        = 0;

protected:
    virtual ~ZEFAsynchronousFileLoaderDelegate() = default;
};

/// Hears how far the load is.
class ZEF_EXPORT ZEFAsynchronousFileLoaderProgressDelegate {
public:
    /// `count` files were found so far, `latestFile` (null before the first) last. Called ten times
    /// a second, whether or not the count has changed.
    virtual void asynchronousFileLoaderUpdatedNumberOfFilesFound(
        ZEFAsynchronousFileLoader* loader, std::uint32_t count, ZEFFileItem* latestFile)
        = 0;

protected:
    virtual ~ZEFAsynchronousFileLoaderProgressDelegate() = default;
};

/// Hears which folders could not be listed.
class ZEF_EXPORT ZEFAsynchronousFileLoaderFailureDelegate {
public:
    /// The contents of `directory`, or some of them, are missing because of `error`. Called once
    /// for each such folder, at whatever depth, also where the log says nothing because access is
    /// denied (`accessDenied`), and for sockets and devices, which are taken for folders until then
    /// (`notAFolder`). At most a tenth of a second late, after the progress of the same moment, and
    /// before the end of the load. `directory` is null if the load was started without a folder.
    virtual void asynchronousFileLoaderFailedToListDirectory(
        ZEFAsynchronousFileLoader* loader, ZEFFileItem* directory, zef::FileError error)
        = 0;

protected:
    virtual ~ZEFAsynchronousFileLoaderFailureDelegate() = default;
};

/// Loads a folder, or files and what is beneath them, in the background, and reports to a delegate
/// how far it is, what failed and what it found. Serves one load.
///
/// Use it on one thread, whose run loop it needs in the default mode; that thread never waits for
/// the disk. A loader that is loading stays alive until it is done or cancelled. The array of what
/// was found stays alive for good, with all files in it: empty it when you are done with it.
class ZEF_EXPORT ZEFAsynchronousFileLoader final : public ZEFObject {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    /// `delegate` (may be null) is not retained. Which of the protocols it has is asked here.
    explicit ZEFAsynchronousFileLoader(ZEFObject* delegate);

    /// Loads the contents of `directory`. Does nothing once a load was started.
    void startWithDirectory(zef::Ref<ZEFFileItem> directory);

    /// Loads `files` (borrowed, copied; null counts as an empty array) and what is beneath them,
    /// `depth` levels deep, -1 for no limit. Does nothing once a load was started.
    void startRecursivelyWithFilesToDepth(const ZEFFileItemArray* files, std::ptrdiff_t depth);

    /// Ends the load under way: the delegate is not called any more. The thread that loads stops at
    /// its next check.
    void cancel();

    /// Whether a load was started, and neither ended nor was cancelled.
    bool isLoading() const { return _operationIsRunning; }
    /// Whether the load has come to its end and the delegate was told.
    bool isComplete() const { return _operationCompleted; }

    /// Borrowed; whoever made the loader keeps it alive.
    ZEFObject* delegate() const { return _delegate; }

    /// Which files are delivered; null, as at first, delivers every one. Borrowed. Set it before
    /// the start.
    ZEFFileFilter* fileFilter() const { return _fileLoadOperation->fileFilter(); }
    void setFileFilter(zef::Ref<ZEFFileFilter>);

    /// Which folders a recursive load descends into: a `ZEFDirectoryFilter` at first; null descends
    /// into none. Borrowed. Set it before the start.
    ZEFDirectoryFilter* directoryFilter() const { return _fileLoadOperation->directoryFilter(); }
    void setDirectoryFilter(zef::Ref<ZEFDirectoryFilter>);

    // For the loader itself.

    /// Looks at the load ten times a second from now on, on the calling thread's run loop.
    void startTimer();
    /// One look: reports to the delegate how far the load is and what failed, unless its thread is
    /// just adding files, and then whether it has ended.
    void checkLoadStatus(zef::Timer*);

private:
    friend class ZEFAsynchronousFileLoaderTestAccess;

    ~ZEFAsynchronousFileLoader() override;

    bool mayStart() const { return !_operationIsRunning && !_operationWasStarted; }
    void start();
    void stopTimer();
    void reportProgress();
    void reportFailures(bool isFinished);
    void takeFailures(bool isFinished);

    ZEFObject* const _delegate;
    ZEFAsynchronousFileLoaderDelegate* const _finishDelegate;
    ZEFAsynchronousFileLoaderProgressDelegate* const _progressDelegate;
    ZEFAsynchronousFileLoaderFailureDelegate* const _failureDelegate;
    const zef::Ref<ZEFFileLoadOperation> _fileLoadOperation = zef::makeRef<ZEFFileLoadOperation>();
    /// Retains the loader while it is valid.
    zef::Ref<zef::Timer> _updateTimer;
    zef::Ref<zef::Lock> _loadingArrayLock;
    zef::Ref<ZEFFileItemArray> _loadingArray;
    /// Taken from the operation and not yet reported.
    std::deque<ZEFFileLoadOperation::Failure> _failures;
    bool _operationWasStarted = false;
    bool _operationIsRunning = false;
    bool _operationCompleted = false;
};
