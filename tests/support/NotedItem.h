// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

/// A host's class whose archives hold a note; the key "instead" in one makes it lead elsewhere.
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
