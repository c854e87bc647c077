// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/BasicInfo/ZEFTriState.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <memory>
#include <optional>
#include <string>

struct ZEFBasicInfoDetails;

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

    /// The name in the folder, as bytes; the localised "Computer" for "/Volumes/". Nil for a lost
    /// file whose name nobody asked for before.
    std::optional<std::string> fileName();
    /// The name to show, in the user's language where the file has one. It may say anything at
    /// all, "report.pdf" too: `fileName` is the truth. Nil as for `fileName`.
    std::optional<std::string> displayName();

    /// The type identifier of the file itself.
    std::string uti();
    /// The type identifier of what an alias or a link leads to; otherwise of the file itself.
    std::string resolvedUTI();

    /// The target of an alias or a link, or the file itself. Nil when it can't be found, except in
    /// the call that finds that out.
    std::optional<zef::FSRef> resolvedFSRef();
    /// Where that is; the file's own URL when it can't be found. Nil for a lost file.
    zef::FileURL resolvedURL();
    std::optional<std::string> resolvedPath();
    /// The item of the target, of this item's class; the item itself for a file that is neither
    /// alias nor link. Nil when there is none.
    zef::Ref<ZEFFileItem> resolvedFile();

    /// Whether it is, or leads to, a folder that is not a package.
    bool isDirectory();
    /// Whether it is a folder that people see as one file. A link to a package is none.
    bool isPackage();
    /// Whether it is, or leads to, an application.
    bool isApplication();
    /// Whether it is an alias file; a symbolic link is none.
    bool isAlias();
    /// Whether it is neither an alias file nor a symbolic link.
    bool isRealFile();
    /// Whether it is hidden from people. "/home/" and "/net/" always are.
    bool isInvisible();
    /// Whether it is "/".
    bool isRootDirectory();
    /// Whether it is "/Volumes/".
    bool isVolumesDirectory();

    /// Lets everything that depends on an alias's target be found out anew, except names, types
    /// and URLs. YES.
    bool resetAliasStatus();

    void updateForEvent(const ZEFChangeRecord*) override;
    void loadDataIntoArchive(ZEFArchiveDictionary* dictionary) override;
    /// Computes nothing: what isn't known yet shows as -1 or "(null)".
    std::string description() const override;

protected:
    ~ZEFBasicInfoFileItem() override;

private:
    class Asking;
    struct FolderKind;

    struct Resolution {
        zef::FSRef ref;
        zef::FileURL url;
        /// Only of one that was made just now.
        bool isUsable = false;
        bool targetIsFolder = false;
        bool wasAliased = false;
    };

    static zef::Ref<ZEFFileItem> itemForArchiveDictionary(
        const ZEFFileItemClass& receiver, const ZEFArchiveDictionary&);

    std::optional<std::string> makeFileName();
    std::optional<std::string> makeDisplayName();
    std::string makeType();
    std::string makeResolvedType();
    bool mayBeAlias();
    std::optional<Resolution> target();
    Resolution resolveTarget() const;
    zef::FileURL findTarget();
    FolderKind folderKind();
    FolderKind makeFolderKind();
    bool makeInvisibility() const;
    void forget(bool withNamesAndTypes);

    // A listing of a large folder makes one of these an entry: what is known only after somebody
    // has asked lies elsewhere.
    std::unique_ptr<ZEFBasicInfoDetails> _details;
    /// Guards all that is below and the details; never held while something is computed.
    mutable zef::ByteLock _answersLock;
    /// Changes with each event that drops answers, so that none that was on its way is kept.
    std::uint16_t _generation = 0;
    ZEFTriState _isApplication;
    ZEFTriState _isVolumesDirectory;
    ZEFTriState _isRootDirectory;
    ZEFTriState _isDirectory;
    ZEFTriState _isPackage;
    ZEFTriState _isInvisible;
    ZEFTriState _isAlias;
    ZEFTriState _resolvedFSRefIsValid;
    ZEFTriState _resolvedIsDirectory;
};
