// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"

namespace {

constexpr std::size_t usualArchiveCapacity = 10;

} // namespace

zef::Ref<ZEFArchiveDictionary> ZEFFileItem::archiveDictionary()
{
    if (!refValid() || !isValid())
        return nullptr;
    auto dictionary = zef::makeRef<ZEFArchiveDictionary>(usualArchiveCapacity);
    loadDataIntoArchive(dictionary.get());
    return dictionary->isEmpty() ? nullptr : dictionary;
}

void ZEFFileItem::loadDataIntoArchive(ZEFArchiveDictionary* dictionary)
{
    if (const auto* lastPath = path())
        dictionary->setStringForKey(*lastPath, ZEFArchivePathKey);

    ZEF_keepReference();
    auto bytes = zef::AliasData::shared().make(referenceCopy(), _pathURL);
    if (!bytes) {
        zef::log("Error %d creating aliasHandle to make aliashandledata for file %s",
            numberOf(bytes.error()),
            zef::logText(_pathURL ? _pathURL.absoluteString().c_str() : nullptr));
        return;
    }
    dictionary->setDataForKey(*std::move(bytes), ZEFArchiveDataKey);
}
