// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntry.h"

#include "ZEFFilesystemTools/Platform/Paths/FileURLText.h"
#include "ZEFFilesystemTools/Platform/Presentation/DisplayName.h"

#include <algorithm>

namespace zef {
namespace {

constexpr std::string_view groupHeader = "[Desktop Entry]";
constexpr std::string_view blanks = " \t\r\v\f";

std::string_view trimmed(std::string_view text)
{
    const auto begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

// The next line without its end and the blanks around it.
std::string_view takeLine(std::string_view& text)
{
    const auto end = std::min(text.find('\n'), text.size());
    const auto line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return trimmed(line);
}

// The byte that a backslash and `letter` stand for; NUL if they stand for nothing.
char byteOfEscape(char letter)
{
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case '\\':
        return '\\';
    default:
        return '\0';
    }
}

std::string unescaped(std::string_view value)
{
    std::string bytes;
    bytes.reserve(value.size());
    for (std::size_t index = 0; index < value.size(); ++index) {
        const bool isEscape = value[index] == '\\' && index + 1 < value.size();
        const char byte = isEscape ? byteOfEscape(value[index + 1]) : '\0';
        bytes += byte ? byte : value[index];
        index += byte ? 1 : 0;
    }
    return bytes;
}

std::string localPath(const std::string& url)
{
    if (url.find('\0') != std::string::npos)
        return {};
    return url.starts_with('/') ? url : pathOfFileURLText(url);
}

} // namespace

DesktopEntry::DesktopEntry(std::string_view bytes, const MessageLocale& locale)
{
    bool isInGroup = false;
    while (!bytes.empty()) {
        const auto line = takeLine(bytes);
        if (line.starts_with('[')) {
            if (isInGroup || line != groupHeader)
                break;
            isInGroup = true;
            continue;
        }
        const auto sign = line.find('=');
        if (isInGroup && !line.starts_with('#') && sign != std::string_view::npos)
            readPair(trimmed(line.substr(0, sign)), trimmed(line.substr(sign + 1)), locale);
    }
    finish();
}

void DesktopEntry::readPair(
    std::string_view key, std::string_view value, const MessageLocale& locale)
{
    if (key == "Type")
        _kind = value == "Application" ? Kind::application
            : value == "Link"          ? Kind::link
                                       : Kind::other;
    else if (key == "URL")
        _target = localPath(unescaped(value));
    else if (key == "Name")
        readName(value, MessageLocale::untranslated);
    else if (key.starts_with("Name[") && key.ends_with(']'))
        readName(value, locale.distance(key.substr(5, key.size() - 6)));
}

// A translation that can't be shown leaves the next best one in its place.
void DesktopEntry::readName(std::string_view value, std::size_t distance)
{
    if (distance > _nameDistance || distance == MessageLocale::unsuited)
        return;
    auto name = unescaped(value);
    if (!isDisplayable(name))
        return;
    _name = std::move(name);
    _nameDistance = distance;
}

void DesktopEntry::finish()
{
    if (_kind != Kind::link)
        _target.clear();
    if (_kind == Kind::other)
        _name.clear();
}

} // namespace zef
