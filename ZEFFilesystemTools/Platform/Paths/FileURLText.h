// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zef {

/// Appends a path's bytes as they stand in a file URL: upper-case percent escapes for all but
/// letters, digits and -._~!$&'()*+,:=@/ (RFC 3986). Any thread.
void appendEscaped(std::string& text, std::string_view bytes);

/// The bytes of the path that a file URL writes; empty if `text` is not a file URL, names another
/// host, or holds a bad escape, an escaped '/' or NUL, a query or a fragment.
std::string pathOfFileURLText(std::string_view text);

/// `path` made absolute with the current folder, with single slashes and none at the end except for
/// "/". Empty for an empty path, one with a NUL, and if there is no current folder.
std::string normalizedAbsolutePath(std::string_view path);

} // namespace zef
