// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileEvent.h"

#include <string_view>

class ZEFFileItem;

/// One thing that happened to one file; immutable, and keeps its file item alive.
///
/// Any thread; the item belongs to the thread that uses it.
class ZEF_EXPORT ZEFChangeRecord final : public ZEFObject {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFChangeRecord(ZEFFileEvent, zef::Ref<ZEFFileItem>);

    /// What happened.
    ZEFFileEvent event() const { return _event; }

    /// The file concerned, borrowed from the record.
    ZEFFileItem* file() const { return _file.get(); }

    /// The number object for `ZEFFileEventKey`, the item for `ZEFFileKey`, null for any other key.
    const ZEFObject* objectForKey(std::string_view key) const;

    /// The number of entries: 2.
    std::size_t count() const;

    std::string description() const override;

private:
    ~ZEFChangeRecord() override;

    ZEFFileEvent _event;
    zef::Ref<ZEFFileItem> _file;
};
