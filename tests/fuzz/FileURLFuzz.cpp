// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using zef::FileURL;
using zef::URLKind;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void checkPath(const FileURL& url)
{
    const auto path = url.path();
    require(path.starts_with('/') && path.find('\0') == std::string::npos);
    require(path.find("//") == std::string::npos);
    require(path == "/" || !path.ends_with('/'));
    require(url.hasPathOf(url.withKind(URLKind::file)));
    zef::PathBytes bytes;
    if (url.fileSystemRepresentation(bytes))
        require(bytes.view() == path && std::strlen(bytes.text()) == path.size());
}

// What is written can be read again, and gives the same.
void checkText(const FileURL& url)
{
    const auto text = url.absoluteString();
    require(text.starts_with("file:///"));
    require(text.ends_with('/') == url.hasDirectoryPath());
    for (const char byte : text)
        require(byte > ' ' && byte < '\x7f');
    require(FileURL::fromString(text) == url);
    const auto kind = url.hasDirectoryPath() ? URLKind::folder : URLKind::file;
    require(FileURL::fromPath(url.path(), kind) == url);
    require(url.withKind(kind) == url);
}

void checkParts(const FileURL& url)
{
    const auto name = url.lastPathComponent();
    const auto folder = url.deletingLastPathComponent();
    require(folder.hasDirectoryPath() && !name.empty());
    require(url.isDirectlyIn(folder));
    require(name.ends_with(url.pathExtension()));
    if (url.name().empty())
        return require(name == "/" && folder == url);
    require(url.name() == name && name.find('/') == std::string::npos);
    const auto kind = url.hasDirectoryPath() ? URLKind::folder : URLKind::file;
    require(folder.appendingPathComponent(name, kind) == url);
    require(FileURL::inFolder(folder.asFolder(), name, kind) == url);
}

void check(const FileURL& url)
{
    if (!url)
        return;
    checkPath(url);
    checkText(url);
    checkParts(url);
}

} // namespace

// The bytes are taken for the text of a URL, for what follows its scheme, and for a path.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    check(FileURL::fromString(bytes));
    check(FileURL::fromString("file://" + std::string(bytes)));
    const bool isNoPath = bytes.empty() || bytes.find('\0') != std::string_view::npos;
    for (const auto kind : { URLKind::file, URLKind::folder }) {
        const auto url = FileURL::fromPath(bytes, kind);
        require(!url == isNoPath);
        check(url);
    }
    return 0;
}
