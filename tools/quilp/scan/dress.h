#pragma once

#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "scan/changes.h"
#include "scan/item.h"
#include "scan/row.h"

namespace quilp {

struct DressRequest {
  bool nfo = false;
  bool artwork = false;
  std::string pattern;  // of --rename; empty for none

  bool any() const { return nfo || artwork || !pattern.empty(); }
};

/// Writes what media centres read beside the files of sure matches, and renames the files. Threads
/// may share one.
class Dresser {
 public:
  Dresser(DressRequest request, Changes& changes)
      : request_(std::move(request)), changes_(changes) {}

  /// Throws std::runtime_error where something cannot be written.
  void dress(const MediaItem& item, const ScanRow& row);

  /// Lines for people: what was written, or would be.
  std::vector<std::string> takeMessages();

 private:
  void dressMovie(const MediaItem& item, const ScanRow& row);
  void dressEpisode(const MediaItem& item, const ScanRow& row);
  void dressShow(const MediaItem& item, const ScanRow& row);
  void write(const std::filesystem::path& file, const std::string& content);
  void addPicture(const std::filesystem::path& stem, const std::string& address);
  void rename(const MediaItem& item, const ScanRow& row);

  const DressRequest request_;
  Changes& changes_;
  std::mutex mutex_;  // for what follows, and for the changes
  std::set<std::string> shows_;
  std::vector<std::string> messages_;
};

}  // namespace quilp
