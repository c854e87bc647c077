// SPDX-License-Identifier: MIT
#include "tools/zef/Watch/TextChangeView.h"

#include "tools/zef/Text.h"

namespace tool {
namespace {

constexpr std::string_view arrow = " \u2192 ";

struct EventText {
    std::string_view name;
    const char* color;
};

EventText textOf(ZEFFileEvent event)
{
    switch (event) {
    case ZEFFileEvent::moved:
        return { "moved", Paint::blue };
    case ZEFFileEvent::renamed:
        return { "renamed", Paint::cyan };
    case ZEFFileEvent::removed:
        return { "removed", Paint::red };
    case ZEFFileEvent::updated:
        return { "updated", Paint::yellow };
    case ZEFFileEvent::appeared:
        return { "appeared", Paint::green };
    case ZEFFileEvent::movedInParent:
        return { "moved in parent", Paint::cyan };
    }
    return { "unknown", Paint::plain };
}

constexpr std::size_t nameColumn = std::string_view("moved in parent").size() + 2;

enum class Detail { name, path };

std::string shown(const zef::FileURL& url, Detail detail, bool isFolder)
{
    auto text = textForTerminal(detail == Detail::path ? url.path() : url.lastPathComponent());
    const bool endsInSlash = !text.empty() && text.back() == '/';
    return isFolder && !endsInSlash ? text + '/' : text;
}

std::string fromTo(const std::string& from, const std::string& to)
{
    return from == to ? to : from + std::string(arrow) + to;
}

std::string description(const WatchedFolder& folder, const ZEFChangeRecord& record)
{
    const auto& file = *record.file();
    const bool needsPath = folder.isItself(file) || record.event() == ZEFFileEvent::moved;
    const auto detail = needsPath ? Detail::path : Detail::name;
    const auto before = folder.lastLocation(file);
    const auto now = file.url();
    const auto text = [&](const zef::FileURL& url) {
        return shown(url, detail, file.isBasicDirectory());
    };
    return before && now ? fromTo(text(before), text(now)) : text(now ? now : before);
}

std::string numberOfFiles(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " file" : " files");
}

std::string pathOf(const WatchedFolder& folder)
{
    return textForTerminal(folder.subscription().url().path());
}

} // namespace

std::string TextChangeView::textOfFolder(const WatchedFolder& folder)
{
    const auto state = folder.subscription().isLoading() ? "loading"
                                                         : numberOfFiles(folder.fileCount());
    return "Watching " + pathOf(folder) + " (" + state + ")\n";
}

std::string TextChangeView::textOfLoaded(const WatchedFolder& folder)
{
    return "Loaded " + pathOf(folder) + " (" + numberOfFiles(folder.fileCount()) + ")\n";
}

std::string TextChangeView::textOfChanges(
    const WatchedFolder& folder, const ZEFChangeArray& changes)
{
    if (changes.isEmpty())
        return {};
    auto text = newHeading(folder);
    for (const auto& record : changes)
        text += line(folder, *record);
    return text;
}

// Empty when the last changes were the same folder's.
std::string TextChangeView::newHeading(const WatchedFolder& folder)
{
    auto heading = pathOf(folder) + ':';
    if (!_showsHeadings || heading == _heading)
        return {};
    _heading = std::move(heading);
    return _paint(Paint::bold, _heading) + '\n';
}

std::string TextChangeView::line(const WatchedFolder& folder, const ZEFChangeRecord& record) const
{
    const auto event = textOf(record.event());
    return _paint(event.color, std::string(event.name))
        + std::string(nameColumn - event.name.size(), ' ') + description(folder, record) + '\n';
}

} // namespace tool
