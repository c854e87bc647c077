// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/MimeDatabase.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTableStorage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

// The three files of a database follow one another, each ended by a line that holds only "---".
std::string_view takeFile(std::string_view& text)
{
    constexpr std::string_view divider = "\n---\n";
    const auto end = std::min(text.find(divider), text.size());
    const auto file = text.substr(0, end);
    text.remove_prefix(std::min(end + divider.size(), text.size()));
    return file;
}

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void askForName(const zef::TypeTableStorage& types, std::string_view name)
{
    const auto type = types.typeOfName(name);
    require(type.empty() || types.conforms(type, "public.data"));
    const auto byExtension = types.typeOfExtension(name);
    require(byExtension.empty() || types.conforms(byExtension, "public.data"));
}

void askForPair(const zef::TypeTableStorage& types, const zef::MimeDatabase::Pair& pair)
{
    const auto one = "mime:" + pair.first;
    const auto other = "mime:" + pair.second;
    require(types.conforms(one, one) && types.conforms(one, "public.item"));
    types.conforms(one, other);
    types.conforms(other, one);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view text(reinterpret_cast<const char*>(data), size);
    zef::MimeDatabase database;
    database.parseGlobs(takeFile(text));
    database.parseSubclasses(takeFile(text));
    database.parseAliases(takeFile(text));
    // The rest is a less important database and also a file's name.
    zef::MimeDatabase lesser;
    lesser.parseGlobs(text);

    const zef::TypeTableStorage types({ database, lesser });
    for (const auto* from : { &database, &lesser }) {
        for (const auto& glob : from->globs) {
            askForName(types, glob.glob);
            askForName(types, "x" + glob.glob);
        }
    }
    for (const auto& pair : database.subclasses)
        askForPair(types, pair);
    for (const auto& pair : database.aliases)
        askForPair(types, pair);
    askForName(types, text);
    askForName(types, text.substr(0, text.find('\n')));
    return 0;
}
