// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Number.h"

/// What happened to a file. Single bits, but a change record carries exactly one of them.
enum class ZEFFileEvent : int {
    /// It is in another folder now.
    moved = 1,
    /// It has another name in the same folder.
    renamed = 2,
    /// It is gone.
    removed = 4,
    /// Its contents or its attributes changed.
    updated = 8,
    /// It was found in the folder for the first time.
    appeared = 16,
    /// Its location changed because its folder was moved or renamed.
    movedInParent = 32,
};

/// The number object of an event: the same one each time, kept for the life of the process. Any
/// thread.
ZEF_EXPORT const zef::Number* ZEFFileEventNumber(ZEFFileEvent);

/// The keys of a change record.
extern ZEF_EXPORT const char* const ZEFFileEventKey;
extern ZEF_EXPORT const char* const ZEFFileKey;

/// Names of the events, for clients; change records carry the numbers.
extern ZEF_EXPORT const char* const ZEFFileMovedEvent;
extern ZEF_EXPORT const char* const ZEFFileRenamedEvent;
extern ZEF_EXPORT const char* const ZEFFileRemovedEvent;
extern ZEF_EXPORT const char* const ZEFFileUpdatedEvent;
extern ZEF_EXPORT const char* const ZEFFileAppearedEvent;
extern ZEF_EXPORT const char* const ZEFFileMovedInParentEvent;
