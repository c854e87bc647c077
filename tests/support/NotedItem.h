// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

/// A host's class whose archives hold a note, and lead where "instead" says if they hold that.
class NotedItem : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using ZEFFileItem::ZEFFileItem;

    void loadDataIntoArchive(ZEFArchiveDictionary* dictionary) override
    {
        ZEFFileItem::loadDataIntoArchive(dictionary);
        dictionary->setStringForKey("noted", "note");
    }

    static zef::Ref<ZEFFileItem> readArchive(
        const ZEFFileItemClass& receiver, const ZEFArchiveDictionary& dictionary)
    {
        const auto* path = dictionary.stringForKey("instead");
        return path ? receiver.newFileItemForPath(*path)
                    : ZEFFileItem::classObject.readArchive(receiver, dictionary);
    }
};

inline const ZEFFileItemClass NotedItem::classObject("NotedItem", &ZEFFileItem::classObject,
    ZEFFileItemClass::initializer<NotedItem>, NotedItem::readArchive);

/// A subclass of that one which says nothing of archives.
class HeirItem final : public NotedItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using NotedItem::NotedItem;
};

inline const ZEFFileItemClass HeirItem::classObject(
    "HeirItem", &NotedItem::classObject, ZEFFileItemClass::initializer<HeirItem>);

/// A host's class whose items keep everything to themselves.
class SilentItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using ZEFFileItem::ZEFFileItem;

    void loadDataIntoArchive(ZEFArchiveDictionary*) override { }
};

inline const ZEFFileItemClass SilentItem::classObject(
    "SilentItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<SilentItem>);
