#include "scan/decision.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <vector>

#include "name/path.h"
#include "scan/interruption.h"
#include "scan/limited.h"
#include "scan/media_files.h"
#include "scan/show_group.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;

/// All items that a file's decision may depend on: those of its folder, and of its show's.
std::vector<MediaItem> itemsAround(const fs::path& file, std::optional<MediaKind> kind) {
  std::error_code error;
  fs::path folder = file;
  if (!fs::is_directory(file, error)) {
    folder = file.parent_path();
    if (libquilp::isSeasonFolder(folder.filename().native())) {
      folder = folder.parent_path();
    }
  }
  folder = folder.empty() ? "." : folder;
  return itemsOf(mediaFilesOf({folder.native()}).paths, kind).items;
}

bool isOf(const MediaItem& item, const fs::path& file) {
  const fs::path wanted = file.lexically_normal();
  return std::any_of(item.files.begin(), item.files.end(), [&wanted](const std::string& one) {
    return fs::path(one).lexically_normal() == wanted;
  });
}

std::size_t indexOf(const std::vector<MediaItem>& items, const fs::path& file) {
  std::error_code error;
  if (!fs::is_directory(file, error)) {
    return static_cast<std::size_t>(
        std::find_if(items.begin(), items.end(),
                     [&file](const MediaItem& item) { return isOf(item, file); }) -
        items.begin());
  }
  if (items.size() != 1 || !items.front().isFolder) {
    throw std::runtime_error(file.native() + " is no single disc or album; name a file of it");
  }
  return 0;
}

}  // namespace

Decision decide(const ScanRequest& request, const std::string& file) {
  Limited::setSeconds(request.timeout);
  std::vector<MediaItem> items = itemsAround(file, request.kind);
  std::size_t own = indexOf(items, file);
  if (own == items.size()) {  // it does not exist, or a scan of its folder leaves it out
    items = itemsOf({file}, request.kind).items;
    own = 0;
  }
  if (items.empty()) {
    throw std::runtime_error(
        file + " comes with a film, such as a sample or trailer: a scan leaves it out");
  }
  const Messages messages;
  const Interruption interruption(messages);
  Finder finder(request.candidates, request.sure,
                request.overrides.empty() ? Overrides() : Overrides(request.overrides));
  std::vector<std::optional<ScanRow>> rows(items.size());
  rows[own] = finder.find(items[own]);
  const std::vector<std::size_t> ends = endsOfGroups(items);
  const std::size_t end = ends[own];
  const auto begin =
      static_cast<std::size_t>(std::find(ends.begin(), ends.end(), end) - ends.begin());
  if (canBeSettled(*rows[own])) {  // then the other episodes count
    for (std::size_t i = begin; i < end && !interruption.wanted(); ++i) {
      rows[i] = rows[i] ? rows[i] : finder.find(items[i]);
    }
    if (!interruption.wanted()) {
      settleShow(finder, items, rows, begin, end);
    }
  }
  return {items[own], *rows[own], request.sure, finder.whyNothing(), interruption.wanted()};
}

}  // namespace quilp
