// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/FileURLText.h"

#include "ZEFFilesystemTools/Platform/Text/PercentEncoding.h"

#include <cstdlib>

#include <strings.h>
#include <unistd.h>

namespace zef {
namespace {

bool staysUnescaped(char byte)
{
    return isUnreserved(byte)
        || std::string_view("!$&'()*+,:=@/").find(byte) != std::string_view::npos;
}

int hexDigit(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    if (character >= 'a' && character <= 'f')
        return character - 'a' + 10;
    if (character >= 'A' && character <= 'F')
        return character - 'A' + 10;
    return -1;
}

// The byte of the escape at `text[0]`; -1 for a bad one and for those that no path may hold.
int escapedByte(std::string_view text)
{
    if (text.size() < 3)
        return -1;
    const int high = hexDigit(text[1]);
    const int low = hexDigit(text[2]);
    const int byte = high * 16 + low;
    return high < 0 || low < 0 || byte == 0 || byte == '/' ? -1 : byte;
}

std::string unescaped(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '?' || text[index] == '#' || !text[index])
            return {};
        if (text[index] != '%') {
            bytes += text[index];
            continue;
        }
        const int byte = escapedByte(text.substr(index));
        if (byte < 0)
            return {};
        bytes += static_cast<char>(byte);
        index += 2;
    }
    return bytes;
}

bool removePrefix(std::string_view& text, std::string_view prefix)
{
    if (text.size() < prefix.size() || strncasecmp(text.data(), prefix.data(), prefix.size()) != 0)
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

std::string currentFolder()
{
    char* folder = ::getcwd(nullptr, 0); // allocates as much as it needs (getcwd(3))
    std::string result(folder ? folder : "");
    std::free(folder);
    return result;
}

} // namespace

void appendEscaped(std::string& text, std::string_view bytes)
{
    appendPercentEncoded(text, bytes, staysUnescaped);
}

std::string pathOfFileURLText(std::string_view text)
{
    if (!removePrefix(text, "file:"))
        return {};
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        removePrefix(text, "localhost");
    }
    return text.starts_with('/') ? unescaped(text) : std::string();
}

std::string normalizedAbsolutePath(std::string_view path)
{
    if (path.empty() || path.find('\0') != std::string_view::npos)
        return {};
    std::string result;
    if (path.front() != '/') {
        result = currentFolder();
        // The kernel writes "(unreachable)" before a folder outside of this process's root.
        if (result.empty() || result.front() != '/')
            return {};
        if (result.back() != '/')
            result += '/';
    }
    for (const char byte : path) {
        if (byte != '/' || result.empty() || result.back() != '/')
            result += byte;
    }
    if (result.size() > 1 && result.back() == '/')
        result.pop_back();
    return result;
}

} // namespace zef
