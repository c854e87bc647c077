// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include "ZEFFilesystemTools/Platform/Paths/FileURLText.h"

#include <cassert>
#include <new>

namespace zef {

std::string_view extensionOfName(std::string_view name) noexcept
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return {};
    const auto extension = name.substr(dot + 1);
    return extension.find(' ') == std::string_view::npos ? extension : std::string_view();
}

// The name's bytes follow the node in the same block of memory, so that a URL is one small
// allocation beside the folder path that it shares with its neighbours.
class ZEF_INTERNAL FileURL::Node {
public:
    static Ref<const Node> make(Ref<const FolderPath> folder, std::string_view name, URLKind kind)
    {
        void* memory = ::operator new(sizeof(Node) + name.size());
        auto* node = new (memory) Node(std::move(folder), name.size(), kind);
        name.copy(node->bytes(), name.size());
        return Ref<const Node>::adopt(node);
    }

    void retain() const noexcept { _retainCount.fetch_add(1, std::memory_order_relaxed); }

    void release() const noexcept
    {
        if (_retainCount.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return;
        this->~Node();
        ::operator delete(const_cast<Node*>(this));
    }

    const Ref<const FolderPath>& folder() const { return _folder; }
    std::string_view name() const { return { const_cast<Node*>(this)->bytes(), _nameLength }; }
    bool isFolder() const { return _isFolder; }
    bool isRoot() const { return !_nameLength; }

    std::string_view closingSlash() const { return isRoot() ? "" : "/"; }

private:
    Node(Ref<const FolderPath> folder, std::size_t nameLength, URLKind kind)
        : _nameLength(static_cast<std::uint32_t>(nameLength & 0x7fffffff))
        , _isFolder(kind == URLKind::folder)
        , _folder(std::move(folder))
    {
    }

    ~Node() = default;

    char* bytes() { return reinterpret_cast<char*>(this + 1); }

    mutable std::atomic<std::uint32_t> _retainCount{ 1 };
    std::uint32_t _nameLength : 31;
    std::uint32_t _isFolder : 1;
    Ref<const FolderPath> _folder;
};

FileURL::FileURL(Ref<const Node> node) noexcept
    : _node(std::move(node))
{
}

FileURL::FileURL() noexcept = default;
FileURL::FileURL(std::nullptr_t) noexcept { }
FileURL::FileURL(const FileURL&) noexcept = default;
FileURL::FileURL(FileURL&&) noexcept = default;
FileURL& FileURL::operator=(const FileURL&) noexcept = default;
FileURL& FileURL::operator=(FileURL&&) noexcept = default;
FileURL::~FileURL() = default;

FileURL FileURL::fromPath(std::string_view path, URLKind kind)
{
    auto bytes = normalizedAbsolutePath(path);
    if (bytes.empty())
        return nullptr;
    if (bytes == "/")
        return FileURL(Node::make(FolderPath::of("/"), {}, URLKind::folder));
    const auto split = bytes.rfind('/') + 1;
    const std::string_view whole(bytes);
    return FileURL(Node::make(FolderPath::of(whole.substr(0, split)), whole.substr(split), kind));
}

FileURL FileURL::fromString(std::string_view text)
{
    auto path = pathOfFileURLText(text);
    if (path.empty())
        return nullptr;
    return fromPath(path, path.back() == '/' ? URLKind::folder : URLKind::file);
}

FileURL FileURL::inFolder(Ref<const FolderPath> folder, std::string_view name, URLKind kind)
{
    assert(folder && !name.empty() && name.find('/') == std::string_view::npos);
    return FileURL(Node::make(std::move(folder), name, kind));
}

bool FileURL::operator==(const FileURL& other) const noexcept
{
    if (_node == other._node)
        return true;
    return hasPathOf(other) && _node->isFolder() == other._node->isFolder();
}

bool FileURL::hasPathOf(const FileURL& other) const noexcept
{
    return _node && other._node && _node->folder() == other._node->folder()
        && _node->name() == other._node->name();
}

std::string FileURL::absoluteString() const
{
    if (!_node)
        return {};
    std::string text = "file://";
    appendEscaped(text, _node->folder()->bytes());
    appendEscaped(text, _node->name());
    if (hasDirectoryPath())
        text += _node->closingSlash();
    return text;
}

bool FileURL::hasDirectoryPath() const noexcept
{
    return _node && _node->isFolder();
}

std::string FileURL::path() const
{
    if (!_node)
        return {};
    std::string result(_node->folder()->bytes());
    return result += _node->name();
}

bool FileURL::fileSystemRepresentation(PathBytes& bytes) const
{
    bytes.clear();
    return _node && bytes.append(_node->folder()->bytes()) && bytes.append(_node->name());
}

std::string FileURL::lastPathComponent() const
{
    if (!_node)
        return {};
    return _node->isRoot() ? "/" : std::string(_node->name());
}

std::string_view FileURL::name() const noexcept
{
    return _node ? _node->name() : std::string_view();
}

std::string FileURL::pathExtension() const
{
    return std::string(extensionOfName(name()));
}

FileURL FileURL::deletingLastPathComponent() const
{
    return _node ? fromPath(_node->folder()->bytes(), URLKind::folder) : FileURL();
}

FileURL FileURL::appendingPathComponent(std::string_view name, URLKind kind) const
{
    return _node ? inFolder(asFolder(), name, kind) : FileURL();
}

FileURL FileURL::withKind(URLKind kind) const
{
    if (!_node || _node->isRoot() || hasDirectoryPath() == (kind == URLKind::folder))
        return *this;
    return FileURL(Node::make(_node->folder(), _node->name(), kind));
}

bool FileURL::isDirectlyIn(const FileURL& folder) const noexcept
{
    if (!_node || !folder._node || !folder._node->isFolder())
        return false;
    const auto parent = _node->folder()->bytes();
    const auto above = folder._node->folder()->bytes();
    const auto name = folder._node->name();
    const auto slash = folder._node->closingSlash();
    return parent.size() == above.size() + name.size() + slash.size() && parent.starts_with(above)
        && parent.substr(above.size()).starts_with(name);
}

const FolderPath& FileURL::parentFolder() const noexcept
{
    assert(_node);
    return *_node->folder();
}

Ref<const FolderPath> FileURL::asFolder() const
{
    if (!_node)
        return nullptr;
    if (_node->isRoot())
        return _node->folder();
    std::string bytes;
    bytes.reserve(_node->folder()->bytes().size() + _node->name().size() + 1);
    bytes.append(_node->folder()->bytes()).append(_node->name()).append(1, '/');
    return FolderPath::of(bytes);
}

} // namespace zef
