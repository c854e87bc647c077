// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileInformation.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Types/TypeIdentifiers.h"

#include <numeric>
#include <utility>

namespace {

using Result = zef::FileError;

std::size_t indexOf(FakeFileInformation::Question question)
{
    return static_cast<std::size_t>(question);
}

std::string usualType(const zef::FileInformation::Object& object)
{
    if (object.isSymlink)
        return std::string(zef::type::symlink);
    return std::string(object.ref.isFolder() ? zef::type::folder : zef::type::data);
}

} // namespace

void FakeFileInformation::setContentType(const zef::FileURL& url, std::string type)
{
    std::lock_guard lock(_mutex);
    answers(url).type = std::move(type);
}

void FakeFileInformation::setInvisible(const zef::FileURL& url, bool isInvisible)
{
    std::lock_guard lock(_mutex);
    answers(url).isInvisible = isInvisible;
}

void FakeFileInformation::setDisplayName(const zef::FileURL& url, std::string name)
{
    std::lock_guard lock(_mutex);
    answers(url).displayName = std::move(name);
}

void FakeFileInformation::setAliasTarget(
    const zef::FileURL& url, const zef::FSRef& ref, const zef::FileURL& target)
{
    std::lock_guard lock(_mutex);
    answers(url).aliasTarget = Target{ ref, target };
}

void FakeFileInformation::setTarget(
    const zef::FileURL& url, const zef::FSRef& ref, const zef::FileURL& target)
{
    std::lock_guard lock(_mutex);
    answers(url).target = Target{ ref, target };
}

void FakeFileInformation::setError(Question question, const zef::FileURL& url, zef::FileError error)
{
    std::lock_guard lock(_mutex);
    answers(url).errors.at(indexOf(question)) = error;
}

std::size_t FakeFileInformation::count(Question question) const
{
    std::lock_guard lock(_mutex);
    return _counts.at(indexOf(question));
}

std::size_t FakeFileInformation::count() const
{
    std::lock_guard lock(_mutex);
    return std::accumulate(_counts.begin(), _counts.end(), std::size_t{ 0 });
}

zef::FileError FakeFileInformation::copyContentType(const Object& object, std::string& type)
{
    auto error = zef::FileError::none;
    const auto answers = ask(Question::contentType, object.url.path(), error);
    if (error == zef::FileError::none)
        type = answers.type.value_or(usualType(object));
    return error;
}

zef::FileError FakeFileInformation::copyInvisibility(const Object& object, bool& isInvisible)
{
    auto error = zef::FileError::none;
    const auto answers = ask(Question::invisibility, object.url.path(), error);
    if (error == zef::FileError::none)
        isInvisible = answers.isInvisible;
    return error;
}

zef::FileError FakeFileInformation::copyInvisibilityAtURL(
    const zef::FileURL& url, bool& isInvisible)
{
    auto error = zef::FileError::none;
    const auto answers = ask(Question::invisibilityAtURL, url.path(), error);
    if (error == zef::FileError::none)
        isInvisible = answers.isInvisible;
    return error;
}

std::string FakeFileInformation::copyDisplayName(const Object& object)
{
    auto error = zef::FileError::none;
    const auto answers = ask(Question::displayName, object.url.path(), error);
    return error != zef::FileError::none
        ? ""
        : answers.displayName.value_or(object.url.lastPathComponent());
}

std::string FakeFileInformation::copyDisplayNameAtPath(const std::string& path)
{
    const auto url = zef::FileURL::fromPath(path, zef::URLKind::file);
    auto error = zef::FileError::none;
    const auto answers = ask(Question::displayNameAtPath, url.path(), error);
    return error != zef::FileError::none ? ""
                                         : answers.displayName.value_or(url.lastPathComponent());
}

zef::FileError FakeFileInformation::resolveAliasFile(
    zef::FSRef& ref, zef::FileURL& url, bool& targetIsFolder, bool& wasAliased)
{
    auto error = zef::FileError::none;
    const auto answers = ask(Question::aliasFile, url.path(), error);
    if (error != zef::FileError::none)
        return error;
    wasAliased = answers.aliasTarget.has_value();
    if (wasAliased) {
        ref = answers.aliasTarget->ref;
        url = answers.aliasTarget->url;
    }
    targetIsFolder = ref.isFolder();
    return Result::none;
}

zef::FileError FakeFileInformation::copyTargetOfURL(
    const zef::FileURL& url, zef::FSRef& ref, zef::FileURL& target)
{
    auto error = zef::FileError::none;
    const auto answers = ask(Question::targetOfURL, url.path(), error);
    if (error != zef::FileError::none)
        return error;
    if (!answers.target)
        return Result::notFound;
    ref = answers.target->ref;
    target = answers.target->url;
    return Result::none;
}

FakeFileInformation::Answers& FakeFileInformation::answers(const zef::FileURL& url)
{
    return _answers[url.path()];
}

FakeFileInformation::Answers FakeFileInformation::ask(
    Question question, const std::string& path, zef::FileError& error)
{
    std::lock_guard lock(_mutex);
    ++_counts.at(indexOf(question));
    const auto found = _answers.find(path);
    auto answers = found == _answers.end() ? Answers() : found->second;
    error = answers.errors.at(indexOf(question));
    return answers;
}
