// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"

#include <array>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>

/// Tells of files what a test says, and stands in for the shared service while it lives. Asks the
/// disk nothing.
///
/// Answers belong to paths, whatever the mark of the URL. Without one, a folder is "public.folder",
/// a link "public.symlink", anything else "public.data"; everything is visible, shows the last
/// component of its path, and is its own alias target; the target of a URL can't be found. Any
/// thread.
class FakeFileInformation final : public zef::FileInformation {
public:
    enum class Question {
        contentType,
        invisibility,
        invisibilityAtURL,
        displayName,
        displayNameAtPath,
        aliasFile,
        targetOfURL,
    };

    FakeFileInformation() { replaceShared(this); }
    ~FakeFileInformation() override { replaceShared(nullptr); }
    FakeFileInformation(const FakeFileInformation&) = delete;
    FakeFileInformation& operator=(const FakeFileInformation&) = delete;

    void setContentType(const zef::FileURL&, std::string type);
    /// For both ways to ask.
    void setInvisible(const zef::FileURL&, bool isInvisible);
    /// For both ways to ask; empty for none.
    void setDisplayName(const zef::FileURL&, std::string name);
    /// From now on the file at `url` is an alias file that leads to `target`.
    void setAliasTarget(const zef::FileURL& url, const zef::FSRef&, const zef::FileURL& target);
    /// From now on `url` leads to `target`, itself where it is not a link.
    void setTarget(const zef::FileURL& url, const zef::FSRef&, const zef::FileURL& target);
    /// From now on the question about this file fails, or has an empty name for an answer;
    /// `none` ends it.
    void setError(Question, const zef::FileURL&, zef::FileError error);

    /// How often the question was asked.
    std::size_t count(Question) const;
    /// How often anything was asked.
    std::size_t count() const;

    zef::Expected<std::string> copyContentType(const Object&) override;
    zef::Expected<bool> copyInvisibility(const Object&) override;
    zef::Expected<bool> copyInvisibilityAtURL(const zef::FileURL&) override;
    std::string copyDisplayName(const Object&) override;
    std::string copyDisplayNameAtPath(const std::string& path) override;
    zef::Expected<Target> resolveAliasFile(const zef::FSRef&, const zef::FileURL&) override;
    zef::Expected<Target> copyTargetOfURL(const zef::FileURL&) override;

private:
    static constexpr std::size_t questionCount = 7;

    struct Answers {
        std::array<zef::FileError, questionCount> errors{};
        std::optional<std::string> type;
        std::optional<std::string> displayName;
        bool isInvisible = false;
        std::optional<Target> aliasTarget;
        std::optional<Target> target;
    };

    Answers& answers(const zef::FileURL&);
    /// Counts the question, and gives what the test said about the path.
    zef::Expected<Answers> ask(Question, const std::string& path);

    mutable std::mutex _mutex;
    std::map<std::string, Answers> _answers;
    std::array<std::size_t, questionCount> _counts{};
};
