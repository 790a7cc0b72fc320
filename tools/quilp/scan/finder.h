#pragma once

#include <future>
#include <map>
#include <mutex>
#include <string>

#include "scan/item.h"
#include "scan/overrides.h"
#include "scan/row.h"
#include "scan/source.h"

namespace quilp {

/// Finds out what items are. A show is searched for once, however many of its episodes there are.
/// Threads may share one.
class Finder {
 public:
  Finder(int candidates, int sure, Overrides overrides)
      : count_(candidates), sure_(sure), overrides_(std::move(overrides)) {}

  /// With a show, its folder is known to be that show's.
  ScanRow find(const MediaItem& item, const std::string& show = {});

  /// The first answer that says more than that nothing was found, or else any.
  libquilp::Answer whyNothing() const;

 private:
  void findTitle(const MediaItem& item, const std::string& show, ScanRow& row);
  bool takeKnown(const std::string& id, const char* reason, const MediaItem& item, ScanRow& row);
  bool takeAsMovie(const MediaItem& item, ScanRow& row);
  Searched search(const MediaItem& item);
  Searched searchOnce(MediaKind kind, const std::string& words);
  void findEpisode(const MediaItem& item, ScanRow& row);
  void findSong(const MediaItem& item, ScanRow& row);
  void findAlbum(const MediaItem& item, ScanRow& row);
  void note(const libquilp::Answer& answer, ScanRow& row);

  const int count_;
  const int sure_;
  const Overrides overrides_;
  mutable std::mutex mutex_;  // for what follows
  std::map<std::string, std::shared_future<Searched>> shows_;
  libquilp::Answer answer_{};
};

}  // namespace quilp
