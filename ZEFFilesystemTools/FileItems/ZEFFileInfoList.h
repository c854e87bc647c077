// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <memory>

/// What was last seen of a file: one record in the item itself and, chained behind it, one for each
/// observer. A list, because a vector would cost 32 bytes more for an item with one observer.
struct ZEF_EXPORT ZEFFileInfoList {
    /// The item itself for the first record, otherwise the observer. Never retained.
    const ZEFObject* observer = nullptr;
    std::unique_ptr<ZEFFileInfoList> next;

    /// The location last seen; records that saw the same one share it. Null if there is none.
    zef::FileURL path;

    /// Seconds since 1 January 1970.
    double modificationTime = 0;
    double statusChangeTime = 0;

    /// Seconds since 1 January 2001. In the item's own record the time of the latest event, in an
    /// observer's that of the last event reported to it.
    double lastEventTime = 0;

    /// True while the record describes a present object. Not used in the item's own record: the
    /// item keeps that answer where other threads can read it.
    bool valid = false;

    bool hasTimeStampsOf(const zef::Stat&) const;
    void setTimeStamps(const zef::Stat&);
};
