// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "tools/zef/Commands.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/Output.h"
#include "tools/zef/Paint.h"
#include "tools/zef/Text.h"

#include <optional>

namespace tool {
namespace {

constexpr std::size_t valueColumn = std::string_view("  target conforms to  ").size();

std::string yesOrNo(bool yes)
{
    return yes ? "yes" : "no";
}

std::string shown(const std::optional<std::string>& text)
{
    return text ? textForTerminal(*text) : "unknown";
}

bool conforms(const std::string& type, std::string_view other)
{
    return zef::TypeTable::shared().conforms(type, other);
}

std::string kindOf(ZEFBasicInfoFileItem& item)
{
    if (item.isSymlink())
        return "symbolic link";
    if (item.isAlias())
        return "alias file";
    if (item.isPackage())
        return "package";
    if (conforms(item.uti(), zef::type::directory))
        return "folder";
    return conforms(item.uti(), zef::type::data) ? "file" : "special file";
}

// What a link or an alias leads to.
std::string kindOfTarget(ZEFBasicInfoFileItem& item)
{
    if (item.isDirectory())
        return "folder";
    if (conforms(item.resolvedUTI(), zef::type::package))
        return "package";
    return conforms(item.resolvedUTI(), zef::type::data) ? "file" : "special file";
}

// The item of a folder is marked as such, and so are sockets.
std::string kindOfPlain(const ZEFFileItem& item)
{
    if (item.isSymlink())
        return "symbolic link";
    return item.isBasicDirectory() ? "folder or socket" : "file";
}

// Tells people of files, one after the other: the path, and below it a line for each thing known.
class InfoText {
public:
    // What is known of the item, with an empty line between it and what was printed before.
    std::string text(ZEFFileItem&);

private:
    void addBasicInfo(ZEFBasicInfoFileItem&);
    void addTarget(ZEFBasicInfoFileItem&);
    void addType(
        std::string_view label, std::string_view labelOfAncestors, const std::string& type);
    void addReference(const ZEFFileItem&);
    void addLine(std::string_view label, const std::string& value);

    Paint _paint;
    std::string _text;
    bool _hasTold = false;
};

std::string InfoText::text(ZEFFileItem& item)
{
    const auto url = item.url();
    _text = _hasTold ? "\n" : "";
    _hasTold = true;
    _text += _paint(Paint::bold, textForTerminal(url.path())) + '\n';
    if (auto* withBasicInfo = zef::downcast<ZEFBasicInfoFileItem>(&item)) {
        addBasicInfo(*withBasicInfo);
    } else {
        addLine("name", textForTerminal(url.lastPathComponent()));
        addLine("kind", kindOfPlain(item));
    }
    addReference(item);
    return std::move(_text);
}

void InfoText::addBasicInfo(ZEFBasicInfoFileItem& item)
{
    addLine("name", shown(item.fileName()));
    addLine("shown as", shown(item.displayName()));
    addLine("kind", kindOf(item));
    addType("type", "conforms to", item.uti());
    if (!item.isRealFile())
        addTarget(item);
    addLine("application", yesOrNo(item.isApplication()));
    addLine("package", yesOrNo(item.isPackage()));
    addLine("hidden", yesOrNo(item.isInvisible()));
}

void InfoText::addTarget(ZEFBasicInfoFileItem& item)
{
    const auto url = item.resolvedURL();
    // Null from the second question on when there is no target.
    if (!item.resolvedFSRef())
        return addLine("target", _paint(Paint::red, "none: it leads nowhere"));
    addLine("target", textForTerminal(url.path()));
    addLine("target kind", kindOfTarget(item));
    addType("target type", "target conforms to", item.resolvedUTI());
}

void InfoText::addType(
    std::string_view label, std::string_view labelOfAncestors, const std::string& type)
{
    addLine(label, textForTerminal(type));
    std::string ancestors;
    for (const auto& ancestor : zef::TypeTable::shared().conformances(type)) {
        if (ancestor != type)
            ancestors += (ancestors.empty() ? "" : ", ") + textForTerminal(ancestor);
    }
    if (!ancestors.empty())
        addLine(labelOfAncestors, ancestors);
}

void InfoText::addReference(const ZEFFileItem& item)
{
    addLine("device", std::to_string(item.fileDeviceNumber()));
    addLine("inode", std::to_string(item.fileiNode()));
    addLine("reference",
        item.refValid() ? "usable: it is found again after a move"
                        : _paint(Paint::yellow, "none: it is known by its path alone"));
}

void InfoText::addLine(std::string_view label, const std::string& value)
{
    auto begin = "  " + std::string(label);
    begin.resize(valueColumn, ' ');
    _text += _paint(Paint::faint, begin) + value + '\n';
}

std::string jsonLine(ZEFFileItem& item)
{
    auto object = jsonOfItemInFull(item);
    if (auto* withBasicInfo = zef::downcast<ZEFBasicInfoFileItem>(&item))
        addBasicInfo(object, *withBasicInfo);
    return object.line();
}

} // namespace

int run(const InfoOptions& options)
{
    InfoText text;
    const auto& fileClass = FileClasses::printed(options.plain, options.json);
    return forEachArgument(options.paths, fileClass, [&](ZEFFileItem& item) -> std::string {
        Output::standardOutput().write(options.json ? jsonLine(item) : text.text(item));
        return {};
    });
}

} // namespace tool
