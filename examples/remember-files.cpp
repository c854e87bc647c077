// SPDX-License-Identifier: MIT

// Keeps what leads to a file: `remember-files ARCHIVE FILE` writes it to ARCHIVE, and
// `remember-files ARCHIVE` prints where the file is now, also after it was renamed or moved.

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

/// A class of the program's own: what it adds to an item is kept as long as the item is.
class Document final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using ZEFFileItem::ZEFFileItem;
};

const ZEFFileItemClass Document::classObject(
    "Document", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<Document>);

/// The path and a NUL, then the data: any form that keeps both will do.
bool write(const char* archive, ZEFFileItem& file)
{
    const auto dictionary = file.archiveDictionary();
    if (!dictionary)
        return false;
    std::ofstream output(archive, std::ios::binary);
    if (const auto* path = dictionary->stringForKey(ZEFArchivePathKey))
        output << *path;
    output << '\0';
    if (const auto* data = dictionary->dataForKey(ZEFArchiveDataKey))
        output.write(reinterpret_cast<const char*>(data->data()),
            static_cast<std::streamsize>(data->size()));
    return output.flush().good();
}

zef::Ref<ZEFFileItem> read(const char* archive)
{
    std::ifstream input(archive, std::ios::binary);
    std::string path;
    std::getline(input, path, '\0');
    const std::string bytes{ std::istreambuf_iterator<char>(input), {} };
    const auto* data = reinterpret_cast<const std::byte*>(bytes.data());

    const auto dictionary = zef::makeRef<ZEFArchiveDictionary>();
    dictionary->setStringForKey(path, ZEFArchivePathKey);
    if (!bytes.empty())
        dictionary->setDataForKey({ data, data + bytes.size() }, ZEFArchiveDataKey);
    return Document::classObject.newFileItemForArchiveDictionary(dictionary.get());
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2 && argumentCount != 3) {
        std::fprintf(stderr, "usage: %s ARCHIVE [FILE]\n", arguments[0]);
        return 2;
    }
    const auto file = argumentCount == 3 ? Document::classObject.newFileItemForPath(arguments[2])
                                         : read(arguments[1]);
    if (!file || (argumentCount == 3 && !write(arguments[1], *file))) {
        std::fprintf(
            stderr, "%s: it can't be found, or not be remembered\n", arguments[argumentCount - 1]);
        return 1;
    }
    if (argumentCount == 2)
        std::printf("%s\n", file->path()->c_str());
    return 0;
}
