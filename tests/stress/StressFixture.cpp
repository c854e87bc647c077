// SPDX-License-Identifier: MIT
#include "tests/stress/StressFixture.h"

#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {

const char* environment(const char* name, const char* fallback)
{
    const char* value = std::getenv(name);
    return value ? value : fallback;
}

} // namespace

StressFixture::StressFixture()
{
    _folder.makeFolder("root");
    _meddler = std::make_unique<Meddler>(_root);
}

StressFixture::~StressFixture()
{
    _queue->waitUntilAllOperationsAreFinished();
}

double StressFixture::secondsToRun()
{
    return std::atof(environment("ZEF_STRESS_SECONDS", "5"));
}

std::uint64_t StressFixture::firstSeed()
{
    return std::strtoull(environment("ZEF_STRESS_SEED", "1"), nullptr, 10);
}

void StressFixture::makeTree()
{
    _watched.clear();
    _meddler->forgetFiles();
    _folder.remove("root");
    _folder.makeFolder("root");
    for (const std::string name : { "root/w0", "root/w1", "root/w2", "root/u0", "root/u1" }) {
        _folder.makeFolder(name);
        _folder.makeFolder(name + "/sub");
        for (const std::string file : { "/a0", "/a1", "/sub/a2" })
            _folder.write(name + file);
    }
}

void StressFixture::watchSomeFolders()
{
    std::erase_if(_watched, [](const auto& folder) { return !folder->isValid(); });
    for (const auto& entry : std::filesystem::directory_iterator(_root)) {
        if (_watched.size() >= 3)
            return;
        auto item = ZEFFileItem::classObject.newFileItemForPath(entry.path().string());
        const bool isWatched = std::any_of(_watched.begin(), _watched.end(),
            [&](auto& folder) { return folder->subscription().directoryFile() == item.get(); });
        if (item && item->isBasicDirectory() && !isWatched)
            _watched.push_back(
                zef::makeRef<WatchedFolder>(item, _meddler->filesWithSeveralNames()));
    }
}

void StressFixture::loadInBackground()
{
    for (const auto& folder : _watched) {
        auto operation = zef::makeRef<ZEFFileLoadOperation>();
        operation->setLoadingDirectory(folder->subscription().directoryFile());
        _queue->addOperation(std::move(operation));
    }
}

void StressFixture::poll()
{
    {
        const zef::ChangeNotifier::Round round;
        for (const auto& folder : _watched)
            folder->check();
    }
    for (const auto& folder : _watched)
        folder->notify();
}

void StressFixture::pollAndCompare()
{
    poll();
    for (const auto& folder : _watched) {
        if (folder->isValid())
            folder->expectToEqualDisk();
    }
}
