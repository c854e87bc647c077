// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <vector>

/// A host's class of file items that remembers the events it was sent.
class RecordingFileItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using ZEFFileItem::ZEFFileItem;

    void updateForEvent(const ZEFChangeRecord* record) override
    {
        records.push_back(record);
        events.push_back(record->event());
        files.push_back(record->file());
    }

    /// Borrowed, and perhaps gone by now.
    std::vector<const ZEFChangeRecord*> records;
    std::vector<ZEFFileEvent> events;
    std::vector<const ZEFFileItem*> files;
};

inline const ZEFFileItemClass RecordingFileItem::classObject("RecordingFileItem",
    &ZEFFileItem::classObject, ZEFFileItemClass::initializer<RecordingFileItem>);
