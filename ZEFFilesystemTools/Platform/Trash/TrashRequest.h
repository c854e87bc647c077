// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Trash/OpenTrashes.h"
#include "ZEFFilesystemTools/Platform/Trash/Trash.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashItem.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace zef {

/// One request to move files to the trash: `validate`, and then `perform` once. One thread at a
/// time.
class TrashRequest {
public:
    /// `refusal` (borrowed) gets what stands in the way.
    explicit TrashRequest(TrashRefusal& refusal);

    /// Looks at every file; false if one can't be moved. Moves nothing; may make an empty trash.
    [[nodiscard]] bool validate(std::span<const TrashEntry> entries);

    /// Moves one file after the other; false if that fails, and then takes everything back.
    [[nodiscard]] bool perform();

private:
    using Items = std::span<TrashItem>;

    TrashProblem add(const TrashEntry& entry, std::size_t index);
    TrashProblem addAt(const FileURL& url, const TrashEntry& entry, std::size_t index);
    Expected<SourceFolder*, TrashProblem> open(const FileURL& url);
    Expected<OpenTrash*, TrashProblem> check(
        SourceFolder& folder, const std::string& name, const Stat& stat, std::uint64_t mountID);
    TrashProblem checkFolder(const SourceFolder& folder, const std::string& name, const Stat& stat);
    bool isMountedBelow(const std::string& path);
    void dropCovered();

    int performBatch(Items items);
    int openFolderOf(const TrashItem& item);
    void undo();
    bool refuse(std::size_t index, TrashProblem problem);

    TrashRefusal& _refusal;
    OpenTrashes _trashes;
    /// By the path in the item's URL; only the last one that was used is open.
    std::unordered_map<std::string, std::unique_ptr<SourceFolder>> _folders;
    SourceFolder* _openFolder = nullptr;
    std::vector<TrashItem> _items;
    std::optional<std::vector<Mount>> _mounts;
    Date _date;
    /// The item that was worked on last.
    std::size_t _current = 0;
};

} // namespace zef
