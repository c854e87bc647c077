// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Folders/ParentInodes.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Locator/ObjectSearch.h"

namespace zef {

/// The locator that asks the kernel. Any thread.
///
/// An object that is neither held nor a folder takes no memory here. Its descriptor is let go as
/// often as `release` is called, so where one reference to an object was refused a descriptor and a
/// later one got it, the first release closes it; the object is then looked for in folders.
class LinuxLocator final : public Locator {
public:
    LinuxLocator();

    bool makeRef(const FileURL& url, const Stat& stat, FSRef& ref) override;
    void retain(FSRef& ref, const FileURL& url) override;
    void release(const FSRef& ref) override;
    FileURL locate(const FSRef& ref, const FileURL& lastKnown) override;
    void releaseVolume(std::string_view path) override;
    bool giveBackOneDescriptor() override;
    void setDescriptorBudget(std::size_t) override;
    std::size_t descriptorBudget() const override;
    std::size_t heldDescriptorCount() const override;
    void setDescriptorPolicy(DescriptorPolicy) override;

private:
    bool wantsDescriptor(const FSRef& ref) const;
    FileURL take(FSRef& ref, const FileURL& lastKnown);
    bool takeAt(FSRef& ref, const FileURL& place);
    bool holdAt(FSRef& ref, const FileURL& place, Ref<ObjectDescriptor>);
    bool completeAt(FSRef& ref, const FileURL& place, const char* path);

    LocatorTables _tables;
    /// One search may go through 32 folders besides the object's own; the next one, for another
    /// object that vanished at the same time, goes through the same ones.
    FolderIndexCache _indexes{ { .seconds = 1, .values = 40, .cost = 300'000 } };
    ParentInodes _parentInodes;
    HandleOpener _opener;
    HoldingPolicy _policy;
};

} // namespace zef
