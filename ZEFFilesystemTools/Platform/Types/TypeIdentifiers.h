// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// The type identifiers that the library itself asks for; `TypeTable` knows more.
namespace zef::type {

inline constexpr std::string_view item = "public.item";
inline constexpr std::string_view data = "public.data";
inline constexpr std::string_view directory = "public.directory";
inline constexpr std::string_view folder = "public.folder";
inline constexpr std::string_view symlink = "public.symlink";
inline constexpr std::string_view package = "org.freedesktop.package";
inline constexpr std::string_view application = "org.freedesktop.application";
inline constexpr std::string_view applicationEntry = "org.freedesktop.application-entry";
inline constexpr std::string_view aliasFile = "org.freedesktop.alias-file";
inline constexpr std::string_view desktopEntry = "org.freedesktop.desktop-entry";

} // namespace zef::type
