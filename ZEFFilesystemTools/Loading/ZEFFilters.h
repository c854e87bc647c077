// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

// Filters are stateless. A load calls them on its own thread, and any number of loads may share
// one.

/// Decides which files a load delivers; this one takes every file.
class ZEF_EXPORT ZEFFileFilter : public ZEFObject {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFFileFilter() = default;

    /// A new filter of this class.
    static zef::Ref<ZEFFileFilter> filter();

    /// Returns true if `file` (may be null) goes into the result.
    virtual bool shouldIncludeFile(ZEFFileItem* file) const;
};

/// Takes what isn't hidden from people. For loads whose items are `ZEFBasicInfoFileItem`s: others
/// don't know what is hidden, and all of them pass.
class ZEF_EXPORT ZEFVisibleFileFilter : public ZEFFileFilter {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFVisibleFileFilter() = default;

    /// A new filter of this class.
    static zef::Ref<ZEFVisibleFileFilter> filter();

    /// False only for an invisible file; true for null.
    bool shouldIncludeFile(ZEFFileItem* file) const override;
};

/// Decides which folders a recursive load descends into, and which folder is listed for a file;
/// this one takes every real folder, packages and hidden ones too, and follows no alias.
class ZEF_EXPORT ZEFDirectoryFilter : public ZEFFileFilter {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFDirectoryFilter() = default;

    /// A new filter of this class.
    static zef::Ref<ZEFDirectoryFilter> filter();

    /// Returns true if `file` is a folder; false for null.
    bool shouldIncludeFile(ZEFFileItem* file) const override;

    /// The folder to list for `file`, which `shouldIncludeFile` took: here `file` itself.
    virtual zef::Ref<ZEFFileItem> trueDirectoryObjectForFile(ZEFFileItem* file) const;
};

/// Takes the folders that people open: none that is hidden or a package, but those that an alias or
/// a link leads to. For loads whose items are `ZEFBasicInfoFileItem`s: others don't know what they
/// are, and none of them passes.
class ZEF_EXPORT ZEFNormalDirectoryFilter : public ZEFDirectoryFilter {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFNormalDirectoryFilter() = default;

    /// A new filter of this class.
    static zef::Ref<ZEFNormalDirectoryFilter> filter();

    /// Returns true if `file` is, or leads to, a folder that is not a package, and is not itself
    /// invisible; false for null.
    bool shouldIncludeFile(ZEFFileItem* file) const override;

    /// The target of an alias or a link, otherwise `file` itself; null when there is none.
    zef::Ref<ZEFFileItem> trueDirectoryObjectForFile(ZEFFileItem* file) const override;
};
