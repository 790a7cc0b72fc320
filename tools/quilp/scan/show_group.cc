#include "scan/show_group.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "name/path.h"
#include "scan/judge.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;

constexpr double kSameTitle = .9;
constexpr int kKnown = 100;

}  // namespace

fs::path showFolderOf(const MediaItem& item) {
  const fs::path folder = fs::absolute(item.path).parent_path();
  if (libquilp::isSeasonFolder(folder.filename().native())) {
    return folder.parent_path();
  }
  const libquilp::Name name = libquilp::readName(folder.filename().native());
  return similarity(name.title, item.name.title) >= kSameTitle ? folder : fs::path();
}

std::vector<std::size_t> endsOfGroups(const std::vector<MediaItem>& items) {
  std::vector<std::size_t> ends(items.size());
  fs::path next;  // the folder of the item after
  for (std::size_t i = items.size(); i-- > 0;) {
    fs::path own = items[i].kind == MediaKind::kEpisode ? showFolderOf(items[i]) : fs::path();
    ends[i] = own.empty() || own != next ? i + 1 : ends[i + 1];
    next = std::move(own);
  }
  return ends;
}

bool canBeSettled(const ScanRow& row) {
  return row.kind == MediaKind::kEpisode && !row.failed && row.confidence != kKnown;
}

void settleShow(Finder& finder, const std::vector<MediaItem>& items,
                std::vector<std::optional<ScanRow>>& rows, std::size_t begin, std::size_t end) {
  std::map<std::string, std::size_t> shows;
  for (std::size_t i = begin; i < end && end - begin > 1; ++i) {
    if (rows[i]->sure && rows[i]->kind == MediaKind::kEpisode) {
      ++shows[rows[i]->id];
    }
  }
  if (shows.empty()) {
    return;
  }
  const std::string show = std::max_element(shows.begin(), shows.end(), [](auto& a, auto& b) {
                             return a.second < b.second;
                           })->first;
  for (std::size_t i = begin; i < end; ++i) {
    ScanRow& row = *rows[i];
    if (!canBeSettled(row) || (row.sure && row.id == show)) {
      continue;
    }
    ScanRow again = finder.find(items[i], show);
    if (again.sure || row.sure) {
      row = std::move(again);
    }
  }
}

}  // namespace quilp
