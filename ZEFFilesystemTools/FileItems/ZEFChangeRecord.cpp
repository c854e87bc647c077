// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFChangeRecord.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <array>

namespace {

const std::array<const char*, 2> eventKeysArray{ ZEFFileEventKey, ZEFFileKey };

} // namespace

const zef::Class ZEFChangeRecord::classObject{ "ZEFChangeRecord", &ZEFObject::classObject };

ZEFChangeRecord::ZEFChangeRecord(ZEFFileEvent event, zef::Ref<ZEFFileItem> file)
    : _event(event)
    , _file(std::move(file))
{
}

ZEFChangeRecord::~ZEFChangeRecord() = default;

const ZEFObject* ZEFChangeRecord::objectForKey(std::string_view key) const
{
    if (key == eventKeysArray[0])
        return ZEFFileEventNumber(_event);
    return key == eventKeysArray[1] ? _file.get() : nullptr;
}

std::size_t ZEFChangeRecord::count() const
{
    return eventKeysArray.size();
}

std::string ZEFChangeRecord::description() const
{
    return std::string("{ ") + ZEFFileEventKey + " = " + ZEFFileEventNumber(_event)->description()
        + "; " + ZEFFileKey + " = " + (_file ? _file->description() : "(null)") + "; }";
}
