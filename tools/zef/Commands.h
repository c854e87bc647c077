// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

// The commands of the program: for each of them what the command line can ask for, and a function
// that does it and returns the exit status.

namespace tool {

/// `zef watch`: prints every change in some folders until it is interrupted.
struct WatchOptions {
    std::vector<std::string> folders;
    /// In seconds; the library's own if left out.
    std::optional<double> interval;
    bool asynchronous = false;
    bool plain = false;
    bool json = false;
};
int run(const WatchOptions&);

/// `zef find`: prints files and everything beneath them.
struct FindOptions {
    std::vector<std::string> paths;
    std::ptrdiff_t depth = -1;
    bool visible = false;
    bool normal = false;
    bool plain = false;
    bool json = false;
};
int run(const FindOptions&);

/// `zef list`: prints the contents of one folder.
struct ListOptions {
    std::string folder;
    bool plain = false;
    bool json = false;
};
int run(const ListOptions&);

/// `zef info`: prints all that is known of files.
struct InfoOptions {
    std::vector<std::string> paths;
    bool plain = false;
    bool json = false;
};
int run(const InfoOptions&);

/// `zef archive`: prints of each file what leads to it later, one JSON object a line.
struct ArchiveOptions {
    std::vector<std::string> paths;
    bool plain = false;
};
int run(const ArchiveOptions&);

/// `zef resolve`: reads what `zef archive` has written and prints where each file is now.
struct ResolveOptions {
    bool plain = false;
    bool json = false;
};
int run(const ResolveOptions&);

/// `zef trash`: moves files to the trash, in one request.
struct TrashOptions {
    std::vector<std::string> paths;
};
int run(const TrashOptions&);

/// `zef serve`: the library for programs in any language.
struct ServeOptions {
    bool plain = false;
};
int run(const ServeOptions&);

} // namespace tool
