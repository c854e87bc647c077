// SPDX-License-Identifier: MIT
#include "benchmarks/support/GIOQuestions.h"

#ifdef ZEF_HAS_GIO

#include <gio/gio.h>

bool GIOQuestions::isThere() const
{
    return true;
}

void GIOQuestions::ask(const std::vector<std::string>& paths)
{
    static constexpr auto* questions = "standard::content-type,standard::display-name,"
                                       "standard::is-hidden,standard::symlink-target";
    for (const auto& path : paths) {
        auto* file = g_file_new_for_path(path.c_str());
        auto* answers = g_file_query_info(
            file, questions, G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr, nullptr);
        g_object_unref(answers);
        g_object_unref(file);
    }
}

#else

bool GIOQuestions::isThere() const
{
    return false;
}

void GIOQuestions::ask(const std::vector<std::string>&) { }

#endif
