// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Locator/HeldDescriptors.h"
#include "ZEFFilesystemTools/Platform/Locator/KnownFolders.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace zef {

/// All that the locator remembers of objects: the descriptors that it holds and the folders that it
/// knows. Any thread; no lock is held while the system closes or describes anything.
class LocatorTables {
public:
    explicit LocatorTables(std::size_t budget);

    /// Counts one more use of the object's descriptor and completes `ref` from what is known of the
    /// object. False if the object isn't held.
    [[nodiscard]] bool retainHeld(FSRef& ref);
    /// Counts one use less and closes the descriptor after the last; harmless if none is held.
    void releaseHeld(const FSRef& ref);

    /// A copy of what is held for `ref`; none if nothing is.
    std::optional<HeldObject> findHeld(const FSRef& ref);
    /// Whether an object of this kind would be held.
    bool hasRoom(bool isFolder) const;
    /// Holds the object if there is room. Looks whether a few others have lost their last name, and
    /// closes those.
    void hold(HeldObject object);
    /// The same for a folder, if it is known and not held.
    void holdKnownFolder(HeldObject folder);
    /// Closes the object's descriptor, however often it is used.
    void dropHeld(const FSRef& ref);
    /// Closes the descriptors for which `shouldDrop` (called with no lock held) says so.
    void dropHeldIf(const std::function<bool(const HeldObject&)>& shouldDrop);
    /// False if none is held.
    bool dropLeastWanted();

    void setBudget(std::size_t);
    std::size_t budget() const;
    std::size_t heldCount() const;

    void enterFolder(const FSRef& ref, const FileURL& url);
    /// Counts one use of the folder less, and closes its descriptor after the last.
    void leaveFolder(const FSRef& ref);
    void learnFolder(const FSRef& ref, const FileURL& url);
    bool isKnownFolder(const FSRef& ref) const;
    /// None if no such folder is known.
    std::optional<KnownFolder> findFolder(const ObjectNumbers&) const;
    std::vector<KnownFolder> recentFolders(std::uint32_t device, std::size_t limit) const;

private:
    void sweep();

    mutable std::mutex _mutex;
    HeldDescriptors _held;
    KnownFolders _folders;
};

} // namespace zef
