// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

/// What was last seen of a file: one record for the item itself and, chained behind it, one for
/// each observer.
struct ZEF_EXPORT ZEFFileInfoList {
    /// Whom the record belongs to: the item itself for the first one. Never retained.
    const ZEFObject* observer = nullptr;
    ZEFFileInfoList* next = nullptr;

    /// The location last seen; records that saw the same one share it. Nil when there is none.
    zef::FileURL path;

    /// Seconds since 1 January 1970.
    double modificationTime = 0;
    double statusChangeTime = 0;

    /// Seconds since 1 January 2001. In the item's own record the time of the latest event, in an
    /// observer's that of the event it was last told of.
    double lastEventTime = 0;

    /// Whether the record still describes a present object. In the item's own record unused: the
    /// item keeps its own answer, which other threads read.
    bool valid = false;

    bool hasTimeStampsOf(const zef::Stat&) const;
    void setTimeStamps(const zef::Stat&);
};
