// SPDX-License-Identifier: MIT
#include "benchmarks/support/WalkPeers.h"

#ifdef ZEF_HAS_GIO

#include <gio/gio.h>

namespace {

constexpr auto* questions = "standard::name,standard::type,standard::size,time::modified";

void walk(GFile* folder, std::vector<GFileInfo*>& found)
{
    auto* entries = g_file_enumerate_children(
        folder, questions, G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr, nullptr);
    if (!entries)
        return;
    while (auto* entry = g_file_enumerator_next_file(entries, nullptr, nullptr)) {
        found.push_back(entry);
        if (g_file_info_get_file_type(entry) != G_FILE_TYPE_DIRECTORY)
            continue;
        auto* child = g_file_enumerator_get_child(entries, entry);
        walk(child, found);
        g_object_unref(child);
    }
    g_object_unref(entries);
}

} // namespace

bool peers::hasGIO()
{
    return true;
}

std::size_t peers::gio(const std::string& path)
{
    std::vector<GFileInfo*> found;
    auto* folder = g_file_new_for_path(path.c_str());
    walk(folder, found);
    g_object_unref(folder);
    for (auto* entry : found)
        g_object_unref(entry);
    return found.size();
}

#else

bool peers::hasGIO()
{
    return false;
}

std::size_t peers::gio(const std::string&)
{
    return 0;
}

#endif
