// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "tests/support/FakeFileInformation.h"
#include "tests/support/FakeFileItemFixture.h"

#include <string>
#include <string_view>

/// Basic info items of fake files; the test decides what people are shown of them.
class BasicInfoFixture : public FakeFileItemFixture {
protected:
    using Question = FakeFileInformation::Question;

    static zef::Ref<ZEFBasicInfoFileItem> info(std::string_view path) { return infoAt(url(path)); }

    static zef::Ref<ZEFBasicInfoFileItem> infoAt(const zef::FileURL& where)
    {
        const auto item = ZEFBasicInfoFileItem::classObject.newFileItemForURL(where);
        return zef::Ref(zef::downcast<ZEFBasicInfoFileItem>(item.get()));
    }

    /// An instance without a reference, which the registry doesn't know.
    zef::Ref<ZEFBasicInfoFileItem> withoutReference(const zef::FileURL& where)
    {
        locator.setRefusesReferences(true);
        const auto seen = stat(where.path());
        auto item = unregistered<ZEFBasicInfoFileItem>(where, nullptr, where, &seen);
        locator.setRefusesReferences(false);
        EXPECT_FALSE(item->refValid());
        return item;
    }

    /// Where what is at `path` is found by its reference.
    zef::FileURL place(std::string_view path)
    {
        auto where = stat(path).isFolder() ? folderURL(path) : url(path);
        locator.setPlace(ref(path), where);
        return where;
    }

    static void happened(ZEFBasicInfoFileItem& item, ZEFFileEvent event)
    {
        item.eventOccurred(
            zef::makeRef<ZEFChangeRecord>(event, zef::Ref<ZEFFileItem>(&item)).get());
    }

    /// An alias file at `path` that leads to what is at `target`.
    zef::Ref<ZEFBasicInfoFileItem> aliasTo(std::string_view path, std::string_view target)
    {
        files.addFile(path);
        information.setContentType(url(path), std::string(zef::type::aliasFile));
        information.setAliasTarget(url(path), ref(target), place(target));
        return info(path);
    }

    /// A symbolic link at `path` to what is at `target`.
    zef::Ref<ZEFBasicInfoFileItem> linkTo(std::string_view path, std::string_view target)
    {
        files.addLink(path, target);
        information.setTarget(url(path), ref(target), place(target));
        return info(path);
    }

    FakeFileInformation information;
};
