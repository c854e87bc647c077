// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"
#include "ZEFFilesystemTools/Platform/Trash/Trash.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashRequest.h"

namespace zef {
namespace {

class LinuxTrash final : public Trash {
public:
    TrashOutcome moveToTrash(std::span<const TrashEntry> entries, TrashRefusal& refusal) override
    {
        const auto outcome = run(entries, refusal);
        DescriptorReserve::shared().refill();
        return outcome;
    }

private:
    static TrashOutcome run(std::span<const TrashEntry> entries, TrashRefusal& refusal)
    {
        TrashRequest request(refusal);
        if (!request.validate(entries))
            return TrashOutcome::refused;
        return request.perform() ? TrashOutcome::moved : TrashOutcome::failed;
    }
};

} // namespace

Trash& Trash::system()
{
    return immortal<LinuxTrash>();
}

} // namespace zef
