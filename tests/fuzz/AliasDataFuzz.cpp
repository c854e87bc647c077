// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasRecord.h"
#include "ZEFFilesystemTools/Platform/AliasData/LinuxAliasData.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include "tests/support/AliasBytes.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

// Ends each search after a few looks, so that an input doesn't take a tenth of a second.
class HastyClock final : public zef::Clock {
public:
    zef::Date now() override { return zef::Clock::system().now(); }
    double monotonicSeconds() override { return _seconds += 0.01; }
    void sleep(double) override { }

private:
    double _seconds = 1000;
};

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void checkThatItIsTheObject(
    const zef::AliasRecord& record, const zef::FSRef& ref, const zef::FileURL& url)
{
    zef::Stat stat;
    require(ref.inode() == record.inode);
    // Files of the system's own, such as those of processes, come and go meanwhile.
    if (zef::FileSystem::shared().statLink(url.path().c_str(), stat) == 0)
        require(stat.inode == record.inode || !ref.hasNumbersOf(stat));
}

void checkThatItIsWrittenAlike(const zef::AliasRecord& record)
{
    const auto bytes = record.encode();
    const auto again = zef::AliasRecord::decode(bytes);
    require(again && again->encode() == bytes);
}

} // namespace

// The first byte says whether length and digest are made right before the rest is read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static HastyClock clock;
    static zef::LinuxAliasData aliases;
    zef::Clock::replaceShared(&clock);
    if (!size)
        return 0;
    zef::AliasData::Bytes bytes(size - 1);
    for (std::size_t index = 1; index < size; ++index)
        bytes[index - 1] = std::byte{ data[index] };
    if (data[0] & 1)
        repairDigest(bytes);

    const auto record = zef::AliasRecord::decode(bytes);
    if (record)
        checkThatItIsWrittenAlike(*record);
    if (const auto target = aliases.resolve(bytes)) {
        require(record && target->url);
        checkThatItIsTheObject(*record, target->ref, target->url);
    }
    return 0;
}
