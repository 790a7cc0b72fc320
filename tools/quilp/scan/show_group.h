#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

#include "scan/finder.h"
#include "scan/item.h"
#include "scan/row.h"

namespace quilp {

/// The folder of an episode's show: the one above its season's folder, or its own if that has the
/// show's name. Empty for none.
std::filesystem::path showFolderOf(const MediaItem& item);

/// For each item the end of its group: episodes in one show's folder that follow one another; any
/// other item is a group of its own.
std::vector<std::size_t> endsOfGroups(const std::vector<MediaItem>& items);

/// Whether other episodes of its folder may tell more of it.
bool canBeSettled(const ScanRow& row);

/// A show's folder has one show: that of most of its sure episodes is that of the others, too.
void settleShow(Finder& finder, const std::vector<MediaItem>& items,
                std::vector<std::optional<ScanRow>>& rows, std::size_t begin, std::size_t end);

}  // namespace quilp
