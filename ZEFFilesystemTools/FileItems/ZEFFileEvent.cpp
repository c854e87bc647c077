// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileEvent.h"

namespace {

// Never destroyed: records that outlive main may still refer to them.
const zef::Number* eventObject(ZEFFileEvent event)
{
    return new zef::Number(static_cast<int>(event));
}

} // namespace

const char* const ZEFFileEventKey = "ZEFFileEventKey";
const char* const ZEFFileKey = "ZEFFileKey";
const char* const ZEFFileMovedEvent = "ZEFFileMovedEvent";
const char* const ZEFFileRenamedEvent = "ZEFFileRenamedEvent";
const char* const ZEFFileRemovedEvent = "ZEFFileRemovedEvent";
const char* const ZEFFileUpdatedEvent = "ZEFFileUpdatedEvent";
const char* const ZEFFileAppearedEvent = "ZEFFileAppearedEvent";
const char* const ZEFFileMovedInParentEvent = "ZEFFileMovedInParentEvent";

const zef::Number* ZEFFileEventNumber(ZEFFileEvent event)
{
    static const auto* const fileMovedEventObject = eventObject(ZEFFileEvent::moved);
    static const auto* const fileRenamedEventObject = eventObject(ZEFFileEvent::renamed);
    static const auto* const fileRemovedEventObject = eventObject(ZEFFileEvent::removed);
    static const auto* const fileUpdatedEventObject = eventObject(ZEFFileEvent::updated);
    static const auto* const fileAppearedEventObject = eventObject(ZEFFileEvent::appeared);
    static const auto* const fileMovedInParentEventObject = eventObject(
        ZEFFileEvent::movedInParent);
    switch (event) {
    case ZEFFileEvent::moved:
        return fileMovedEventObject;
    case ZEFFileEvent::renamed:
        return fileRenamedEventObject;
    case ZEFFileEvent::removed:
        return fileRemovedEventObject;
    case ZEFFileEvent::updated:
        return fileUpdatedEventObject;
    case ZEFFileEvent::appeared:
        return fileAppearedEventObject;
    case ZEFFileEvent::movedInParent:
        return fileMovedInParentEventObject;
    }
    return nullptr;
}
