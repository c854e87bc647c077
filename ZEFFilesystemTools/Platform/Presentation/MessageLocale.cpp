// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/MessageLocale.h"

#include <algorithm>
#include <cstdlib>

namespace zef {
namespace {

// Cuts off what follows the first `mark`, and returns it with the mark.
std::string_view takeFrom(std::string_view& text, char mark)
{
    const auto place = std::min(text.find(mark), text.size());
    const auto taken = text.substr(place);
    text = text.substr(0, place);
    return taken;
}

} // namespace

MessageLocale::MessageLocale(std::string_view text)
    : _text(text)
{
    const auto modifier = takeFrom(text, '@');
    takeFrom(text, '.');
    const auto country = takeFrom(text, '_');
    const std::string language(text);
    if (language.empty() || language == "C" || language == "POSIX")
        return;
    if (!country.empty() && !modifier.empty())
        _tags.push_back((language + std::string(country)).append(modifier));
    if (!country.empty())
        _tags.push_back(language + std::string(country));
    if (!modifier.empty())
        _tags.push_back(language + std::string(modifier));
    _tags.push_back(language);
}

MessageLocale MessageLocale::ofEnvironment()
{
    for (const auto* name : { "LC_ALL", "LC_MESSAGES", "LANG" }) {
        const auto* value = std::getenv(name);
        if (value && *value)
            return MessageLocale(value);
    }
    return MessageLocale("");
}

std::size_t MessageLocale::distance(std::string_view tag) const
{
    const auto found = std::find(_tags.begin(), _tags.end(), tag);
    return found == _tags.end() ? unsuited : static_cast<std::size_t>(found - _tags.begin());
}

} // namespace zef
