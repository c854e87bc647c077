// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/BuiltInTypes.h"

#include <algorithm>
#include <array>

namespace zef {
namespace {

// Folders and what depends on a file's content have no extensions here.
constexpr auto rows = std::to_array<BuiltInType>({
    { "public.item", "" },
    { "public.data", "public.item", "", "application/octet-stream" },
    { "public.directory", "public.item", "", "inode/directory" },
    { "public.folder", "public.directory" },
    { "public.volume", "public.folder", "", "inode/mount-point" },
    { "public.symlink", "public.item", "", "inode/symlink" },

    { "org.freedesktop.package", "public.directory" },
    { "org.freedesktop.application", "public.item" },
    { "org.freedesktop.application-bundle", "org.freedesktop.application org.freedesktop.package" },
    { "org.freedesktop.application-entry", "org.freedesktop.application public.data" },
    { "org.freedesktop.application-image", "org.freedesktop.application public.data", "AppImage",
        "application/vnd.appimage" },
    { "org.freedesktop.alias-file", "public.data" },
    { "org.freedesktop.desktop-entry", "public.data", "desktop", "application/x-desktop" },

    { "public.plain-text", "public.data", "txt", "text/plain" },
    { "public.html", "public.plain-text", "html htm", "text/html" },
    { "public.xml", "public.plain-text", "xml", "application/xml text/xml" },
    { "public.json", "public.plain-text", "json", "application/json" },
    { "public.yaml", "public.plain-text", "yaml yml", "application/yaml application/x-yaml" },
    { "public.css", "public.plain-text", "css", "text/css" },
    { "public.comma-separated-values-text", "public.plain-text", "csv", "text/csv" },
    { "public.markdown", "public.plain-text", "md markdown", "text/markdown" },
    { "public.rtf", "public.plain-text", "rtf", "application/rtf text/rtf" },
    { "public.source-code", "public.plain-text" },
    { "public.c-source", "public.source-code", "=c", "text/x-csrc" },
    { "public.c-header", "public.source-code", "h", "text/x-chdr" },
    { "public.c-plus-plus-source", "public.source-code", "=C cc cpp cxx", "text/x-c++src" },
    { "public.c-plus-plus-header", "public.source-code", "hh hpp hxx", "text/x-c++hdr" },
    { "public.javascript", "public.source-code", "js mjs",
        "text/javascript application/javascript" },
    { "public.python-script", "public.source-code", "py", "text/x-python" },
    { "public.shell-script", "public.source-code", "sh", "application/x-shellscript" },
    { "public.pdf", "public.data", "pdf", "application/pdf" },

    { "public.image", "public.data" },
    { "public.jpeg", "public.image", "jpg jpeg", "image/jpeg" },
    { "public.png", "public.image", "png", "image/png" },
    { "public.gif", "public.image", "gif", "image/gif" },
    { "public.tiff", "public.image", "tiff tif", "image/tiff" },
    { "public.bmp", "public.image", "bmp", "image/bmp" },
    { "public.webp", "public.image", "webp", "image/webp" },
    { "public.heif", "public.image", "heic heif", "image/heif" },
    { "public.icon", "public.image", "ico", "image/vnd.microsoft.icon image/x-icon" },
    { "public.svg-image", "public.image public.xml", "svg", "image/svg+xml" },

    { "public.audio", "public.data" },
    { "public.mp3", "public.audio", "mp3", "audio/mpeg" },
    { "public.mpeg-4-audio", "public.audio", "m4a", "audio/mp4" },
    { "public.waveform-audio", "public.audio", "wav", "audio/x-wav audio/vnd.wave audio/wav" },
    { "public.aiff-audio", "public.audio", "aiff aif", "audio/x-aiff" },
    { "public.flac", "public.audio", "flac", "audio/flac" },
    { "public.ogg-audio", "public.audio", "ogg oga", "audio/ogg" },

    { "public.movie", "public.data" },
    { "public.mpeg-4", "public.movie", "mp4 m4v", "video/mp4" },
    { "public.mpeg", "public.movie", "mpg mpeg", "video/mpeg" },
    { "public.quicktime-movie", "public.movie", "mov", "video/quicktime" },
    { "public.matroska", "public.movie", "mkv", "video/x-matroska video/matroska" },
    { "public.webm", "public.matroska", "webm", "video/webm" },
    { "public.avi", "public.movie", "avi", "video/x-msvideo video/vnd.avi" },

    { "public.archive", "public.data" },
    { "public.zip-archive", "public.archive", "zip", "application/zip" },
    { "public.tar-archive", "public.archive", "tar", "application/x-tar" },
    { "public.gzip-archive", "public.archive", "gz", "application/gzip" },
    { "public.bzip2-archive", "public.archive", "bz2", "application/x-bzip2 application/x-bzip" },
    { "public.xz-archive", "public.archive", "xz", "application/x-xz" },
    { "public.zstandard-archive", "public.archive", "zst", "application/zstd" },
    { "public.7z-archive", "public.archive", "7z", "application/x-7z-compressed" },
    { "public.rar-archive", "public.archive", "rar", "application/vnd.rar" },
    { "public.disk-image", "public.data", "iso", "application/x-cd-image application/vnd.efi.iso" },
});

} // namespace

std::span<const BuiltInType> builtInTypes()
{
    return rows;
}

std::string_view takeListedWord(std::string_view& list)
{
    const auto end = std::min(list.find(' '), list.size());
    const auto word = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    return word;
}

} // namespace zef
