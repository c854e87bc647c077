// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <mutex>

namespace zef {

/// Closes one descriptor that somebody holds only to be faster; false when there is none.
using DescriptorGiver = bool (*)();

/// Lets the library open a folder for a moment even when the process has no descriptor left.
///
/// One spare descriptor is open from the start; it makes room when everything else fails and is
/// opened again after the caller is done. Any thread; a second thread that needs the spare at the
/// same time gets the system's error.
class DescriptorReserve {
public:
    /// The process's reserve, made at the first call.
    static DescriptorReserve& shared();

    DescriptorReserve();
    ~DescriptorReserve();
    DescriptorReserve(const DescriptorReserve&) = delete;
    DescriptorReserve& operator=(const DescriptorReserve&) = delete;

    /// As openat(2), close-on-exec in any case, without O_CREAT. When there is no descriptor left
    /// (EMFILE, ENFILE) the giver closes some, and if it has none the spare is closed. -1 with
    /// errno on failure. No lock is held while the file system works.
    int openAt(int folder, const char* path, int flags);

    /// Asks `giver` whenever there is no descriptor left; null asks nobody. Any thread.
    void setGiver(DescriptorGiver giver) { _giver.store(giver, std::memory_order_relaxed); }

    /// Closes a descriptor, by preference one that `openAt` returned, and opens the spare again if
    /// it was used. Leaves errno alone; does nothing for -1.
    void close(int descriptor);

    /// Opens the spare again if it was used and there is room; for descriptors that something else
    /// closes.
    void refill();

    /// Whether the spare is there.
    bool isFilled() const { return _spare.load(std::memory_order_relaxed) >= 0; }

private:
    bool makeRoom();
    bool giveUpSpare();

    /// Held while the spare is opened, so that only one is.
    std::mutex _refillMutex;
    std::atomic<int> _spare{ -1 };
    std::atomic<DescriptorGiver> _giver{ nullptr };
};

} // namespace zef
