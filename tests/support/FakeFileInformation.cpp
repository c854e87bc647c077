// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileInformation.h"

#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include <numeric>
#include <utility>

namespace {

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
    answers(url).aliasTarget = Target{
        .ref = ref, .url = target, .isFolder = ref.isFolder(), .wasAliased = true
    };
}

void FakeFileInformation::setTarget(
    const zef::FileURL& url, const zef::FSRef& ref, const zef::FileURL& target)
{
    std::lock_guard lock(_mutex);
    answers(url).target = Target{ .ref = ref, .url = target, .isFolder = ref.isFolder() };
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

zef::Expected<std::string> FakeFileInformation::copyContentType(const Object& object)
{
    const auto answers = ask(Question::contentType, object.url.path());
    if (!answers)
        return answers.error();
    return answers->type.value_or(usualType(object));
}

zef::Expected<bool> FakeFileInformation::copyInvisibility(const Object& object)
{
    const auto answers = ask(Question::invisibility, object.url.path());
    if (!answers)
        return answers.error();
    return answers->isInvisible;
}

zef::Expected<bool> FakeFileInformation::copyInvisibilityAtURL(const zef::FileURL& url)
{
    const auto answers = ask(Question::invisibilityAtURL, url.path());
    if (!answers)
        return answers.error();
    return answers->isInvisible;
}

std::string FakeFileInformation::copyDisplayName(const Object& object)
{
    const auto answers = ask(Question::displayName, object.url.path());
    return answers ? answers->displayName.value_or(object.url.lastPathComponent()) : "";
}

std::string FakeFileInformation::copyDisplayNameAtPath(const std::string& path)
{
    const auto url = zef::FileURL::fromPath(path, zef::URLKind::file);
    const auto answers = ask(Question::displayNameAtPath, url.path());
    return answers ? answers->displayName.value_or(url.lastPathComponent()) : "";
}

zef::Expected<zef::FileInformation::Target> FakeFileInformation::resolveAliasFile(
    const zef::FSRef& ref, const zef::FileURL& url)
{
    const auto answers = ask(Question::aliasFile, url.path());
    if (!answers)
        return answers.error();
    return answers->aliasTarget.value_or(
        Target{ .ref = ref, .url = url, .isFolder = ref.isFolder() });
}

zef::Expected<zef::FileInformation::Target> FakeFileInformation::copyTargetOfURL(
    const zef::FileURL& url)
{
    const auto answers = ask(Question::targetOfURL, url.path());
    if (!answers)
        return answers.error();
    if (!answers->target)
        return zef::FileError::notFound;
    return *answers->target;
}

FakeFileInformation::Answers& FakeFileInformation::answers(const zef::FileURL& url)
{
    return _answers[url.path()];
}

zef::Expected<FakeFileInformation::Answers> FakeFileInformation::ask(
    Question question, const std::string& path)
{
    std::lock_guard lock(_mutex);
    ++_counts.at(indexOf(question));
    const auto found = _answers.find(path);
    if (found == _answers.end())
        return Answers();
    const auto error = found->second.errors.at(indexOf(question));
    if (error != zef::FileError::none)
        return error;
    return found->second;
}
