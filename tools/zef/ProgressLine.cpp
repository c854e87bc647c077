// SPDX-License-Identifier: MIT
#include "tools/zef/ProgressLine.h"

#include "tools/zef/Interruption.h"
#include "tools/zef/Output.h"
#include "tools/zef/Text.h"

#include <algorithm>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

namespace tool {
namespace {

// The cursor stands behind the text, where an interruption echoes ^C; the last column stays empty,
// or some terminals go on to the next line.
constexpr std::size_t columnsToSpare = 3;
constexpr std::string_view ellipsis = "\u2026";

std::size_t terminalWidth()
{
    constexpr std::size_t usualWidth = 80;
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

// At most that many; no character before the Hangul letters takes two.
std::size_t columnsOf(Character character)
{
    constexpr char32_t firstWide = 0x1100;
    return character.value < firstWide || character.value == U'\u2026' ? 1 : 2;
}

std::size_t columnsOf(std::string_view text)
{
    std::size_t result = 0;
    while (!text.empty()) {
        const auto character = firstCharacter(text);
        result += columnsOf(character);
        text.remove_prefix(character.length);
    }
    return result;
}

// What of the text's end takes so many columns at most.
std::string_view endOf(std::string_view text, std::size_t columns)
{
    auto tooMany = columnsOf(text);
    while (tooMany > columns) {
        const auto character = firstCharacter(text);
        tooMany -= columnsOf(character);
        text.remove_prefix(character.length);
    }
    return text;
}

std::string withPath(std::string text, std::string_view path, std::size_t columns)
{
    text += ": ";
    if (text.size() + ellipsis.size() >= columns)
        return text.substr(0, std::min(text.size() - 2, columns));
    const auto room = columns - text.size();
    const auto shown = textForTerminal(path);
    if (columnsOf(shown) <= room)
        return text + shown;
    return text + std::string(ellipsis) + std::string(endOf(shown, room - 1));
}

} // namespace

// Never destroyed: threads of the library may log until the end.
ProgressLine& ProgressLine::shared()
{
    static auto& line = *new ProgressLine;
    return line;
}

void ProgressLine::show(std::size_t count, std::string_view latestPath)
{
    if (!Output::standardError().isTerminal())
        return;
    const auto width = terminalWidth();
    const auto columns = width > columnsToSpare ? width - columnsToSpare : 0;
    const auto text = std::to_string(count) + (count == 1 ? " file" : " files");
    erase();
    const std::lock_guard lock(_mutex);
    _isShown = true;
    Output::standardError().write(withPath(text, latestPath, columns));
}

void ProgressLine::erase()
{
    makeWay([] {});
}

// By blanks, which every terminal knows.
void ProgressLine::makeWay(const std::function<void()>& write)
{
    const std::lock_guard lock(_mutex);
    if (_isShown || (Interruption::signal() && Output::standardError().isTerminal()))
        Output::standardError().write('\r' + std::string(terminalWidth() - 1, ' ') + '\r');
    _isShown = false;
    write();
}

} // namespace tool
