// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItemClass.h"

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"

namespace {

// The way of ZEFFileItem itself.
zef::Ref<ZEFFileItem> readPlainArchive(
    const ZEFFileItemClass& receiver, const ZEFArchiveDictionary& dictionary)
{
    if (const auto* data = dictionary.dataForKey(ZEFArchiveDataKey)) {
        if (data->empty())
            return nullptr;
        if (auto target = zef::AliasData::shared().resolve(*data))
            return receiver.newFileItemForURLFsRef(target->url, &target->ref);
    }
    const auto* path = dictionary.stringForKey(ZEFArchivePathKey);
    return path ? receiver.newFileItemForPath(*path) : nullptr;
}

// `convert` hands what an element yields to the array that it is given, or nothing.
template <typename Output, typename Input, typename Convert>
zef::Ref<Output> converted(const Input* input, Convert&& convert)
{
    if (!input)
        return nullptr;
    auto output = zef::makeRef<Output>(input->count());
    input->enumerate([&](const auto& element) { convert(element, *output); });
    return output;
}

template <typename Element> void addIfAny(zef::Array<Element>& output, zef::Ref<Element> element)
{
    if (element)
        output.addObject(std::move(element));
}

} // namespace

zef::Ref<ZEFFileItem> ZEFFileItemClass::newFileItemForArchiveDictionary(
    const ZEFArchiveDictionary* dictionary) const
{
    return dictionary ? readArchive(*this, *dictionary) : nullptr;
}

zef::Ref<ZEFFileItem> ZEFFileItemClass::readArchive(
    const ZEFFileItemClass& receiver, const ZEFArchiveDictionary& dictionary) const
{
    const auto* reader = this;
    while (!reader->_readArchive && reader != &ZEFFileItem::classObject
        && reader->isSubclassOf(ZEFFileItem::classObject))
        reader = static_cast<const ZEFFileItemClass*>(reader->superclass);
    return (reader->_readArchive ? reader->_readArchive : readPlainArchive)(receiver, dictionary);
}

zef::Ref<zef::Array<ZEFArchiveDictionary>> ZEFFileItemClass::archiveDictionariesForFileItems(
    const zef::Array<ZEFFileItem>* items) const
{
    return converted<zef::Array<ZEFArchiveDictionary>>(items,
        [](ZEFFileItem* item, auto& output) { addIfAny(output, item->archiveDictionary()); });
}

zef::Ref<zef::Array<ZEFFileItem>> ZEFFileItemClass::fileItemsForArchiveDictionaries(
    const zef::Array<ZEFArchiveDictionary>* dictionaries) const
{
    return converted<zef::Array<ZEFFileItem>>(
        dictionaries, [this](const ZEFArchiveDictionary* dictionary, auto& output) {
            addIfAny(output, newFileItemForArchiveDictionary(dictionary));
        });
}

zef::Ref<zef::Array<zef::FileURL>> ZEFFileItemClass::urlsForFileItems(
    const zef::Array<ZEFFileItem>* items) const
{
    return converted<zef::Array<zef::FileURL>>(items, [](const ZEFFileItem* item, auto& output) {
        if (auto url = item->url())
            output.addObject(std::move(url));
    });
}

zef::Ref<zef::Array<ZEFFileItem>> ZEFFileItemClass::fileItemsForURLs(
    const zef::Array<zef::FileURL>* urls) const
{
    return converted<zef::Array<ZEFFileItem>>(urls, [this](const zef::FileURL& url, auto& output) {
        addIfAny(output, newFileItemForURL(url));
    });
}

zef::Ref<zef::Array<std::string>> ZEFFileItemClass::pathsForFileItems(
    const zef::Array<ZEFFileItem>* items) const
{
    return converted<zef::Array<std::string>>(items, [](ZEFFileItem* item, auto& output) {
        if (const auto* path = item->path())
            output.addObject(*path);
    });
}

zef::Ref<zef::Array<ZEFFileItem>> ZEFFileItemClass::fileItemsForPaths(
    const zef::Array<std::string>* paths) const
{
    return converted<zef::Array<ZEFFileItem>>(paths, [this](const std::string& path, auto& output) {
        addIfAny(output, newFileItemForPath(path));
    });
}
