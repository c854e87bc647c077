// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoAnswers.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <optional>
#include <string>

/// Boolean: whether the file is an alias or a link, which is found again by its path.
extern ZEF_EXPORT const char* const ZEFArchiveIsAliasKey;

/// A file item that knows what a file browser shows: names, type, whether it is a folder, a
/// package, an application, an alias or invisible, and where an alias or a link leads.
///
/// Every answer is computed with the first question and kept; `updateForEvent` drops what an event
/// may have changed. Any thread may ask, because the filters of a load do; two that ask at once may
/// both compute.
class ZEF_EXPORT ZEFBasicInfoFileItem : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    ZEFBasicInfoFileItem(const zef::FileURL& url, const zef::FSRef* fsRef,
        const zef::FileURL& pathRep, const zef::Stat* statInfo);

    /// The name in the folder, as bytes; the localised "Computer" for "/Volumes/". Null for a lost
    /// file whose name nobody asked for before.
    std::optional<std::string> fileName();
    /// The name to show, in the user's language where the file has one. It may say anything at
    /// all, "report.pdf" too: `fileName` is the truth. Null as for `fileName`.
    std::optional<std::string> displayName();

    /// The type identifier of the file itself.
    std::string uti();
    /// The type identifier of what an alias or a link leads to; otherwise of the file itself.
    std::string resolvedUTI();

    /// The target of an alias or a link, or the file itself. Null if it can't be found, except in
    /// the call that finds that out.
    std::optional<zef::FSRef> resolvedFSRef();
    /// Where that is; the file's own URL if it can't be found. Null for a lost file.
    zef::FileURL resolvedURL();
    std::optional<std::string> resolvedPath();
    /// The item of the target, of this item's class; the item itself for a file that is neither
    /// alias nor link. Null if there is none.
    zef::Ref<ZEFFileItem> resolvedFile();

    /// True if it is, or leads to, a folder that is not a package.
    bool isDirectory();
    /// True if it is a folder that people see as one file. A link to a package is not.
    bool isPackage();
    /// True if it is, or leads to, an application.
    bool isApplication();
    /// True if it is an alias file; a symbolic link is not.
    bool isAlias();
    /// True if it is neither an alias file nor a symbolic link.
    bool isRealFile();
    /// True if it is hidden from people. "/home/" and "/net/" always are.
    bool isInvisible();
    /// True if it is "/".
    bool isRootDirectory();
    /// True if it is "/Volumes/".
    bool isVolumesDirectory();

    /// Lets everything that depends on an alias's target be found out anew, except names, types
    /// and URLs. Returns true.
    bool resetAliasStatus();

    void updateForEvent(const ZEFChangeRecord*) override;
    void loadDataIntoArchive(ZEFArchiveDictionary* dictionary) override;
    /// Computes nothing: what is not known yet shows as -1 or "(null)".
    std::string description() const override;

protected:
    ~ZEFBasicInfoFileItem() override;

private:
    static zef::Ref<ZEFFileItem> itemForArchiveDictionary(
        const ZEFFileItemClass& receiver, const ZEFArchiveDictionary&);

    std::optional<std::string> makeFileName();
    std::optional<std::string> makeDisplayName();
    std::string makeType();
    std::string makeResolvedType();
    bool mayBeAlias();
    std::optional<ZEFBasicInfoAnswers::Target> target();
    ZEFBasicInfoAnswers::Target findTarget() const;
    zef::FileURL findTargetURL();
    std::uint8_t folderKind();
    std::uint8_t makeFolderKind();
    bool makeInvisibility() const;
    template <typename Make> bool decide(ZEFBasicInfoAnswers::Flag, Make&&);
    void forget(bool withNamesAndTypes);

    ZEFBasicInfoAnswers _answers;
};
