#include "scan/scan.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <ctime>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "output/exit_status.h"
#include "output/message.h"
#include "platform/why_nothing.h"
#include "scan/changes.h"
#include "scan/dress.h"
#include "scan/finder.h"
#include "scan/interruption.h"
#include "scan/limited.h"
#include "scan/media_files.h"
#include "scan/memory.h"
#include "scan/messages.h"
#include "scan/report.h"
#include "scan/row_writer.h"
#include "scan/show_group.h"
#include "scan/tally.h"

namespace quilp {
namespace {

constexpr int kFailures = 100;  // the exit status for one failure is one more
constexpr std::size_t kMostFailures = 25;
constexpr int kMostAlike = 5;  // messages of one failure; the summary counts all

/// Lookups of one kind must not overlap where no add-on answers them.
int jobsFor(const ScanRequest& request, const std::vector<MediaItem>& items) {
  for (const MediaItem& item : items) {
    if (!hasAddOn(item.kind) && item.kind != MediaKind::kSong) {
      return 1;
    }
  }
  const int processors = static_cast<int>(std::thread::hardware_concurrency());
  return request.jobs > 0 ? request.jobs : std::clamp(processors, 1, 4);
}

std::string settingsOf(const ScanRequest& request) {
  return std::string(request.kind ? nameOf(*request.kind) : "any") + '/' +
         std::to_string(request.candidates) + '/' + std::to_string(request.sure);
}

std::string journalOf(const ScanRequest& request) {
  if (!request.journal.empty() || request.dryRun) {
    return request.journal;
  }
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  std::array<char, 64> name{};
  std::strftime(name.data(), name.size(), "quilp-scan-%Y%m%d-%H%M%S.journal", &parts);
  return name.data();
}

/// The folder that a table's paths are relative to; empty for none.
std::string folderOf(const ScanRequest& request) {
  return request.paths.size() == 1 && request.listed.empty() ? request.paths.front() : "";
}

/// Finds out about items concurrently and prints the rows in the order of the files.
class Scan {
 public:
  Scan(const ScanRequest& request, std::vector<MediaItem> items)
      : finder_(request.candidates, request.sure,
                request.overrides.empty() ? Overrides() : Overrides(request.overrides)),
        jobs_(jobsFor(request, items)),
        items_(std::move(items)),
        groupEnds_(endsOfGroups(items_)),
        rows_(items_.size()),
        memory_(request.memory, settingsOf(request)),
        writer_(makeRowWriter(request.format, folderOf(request))) {
    if (!request.report.empty() || request.format == Format::kHtml) {
      report_ = std::make_unique<ReportPage>(request.report);
    }
    if (request.dress.any()) {
      changes_ = std::make_unique<Changes>(journalOf(request), request.replace, request.dryRun);
      dresser_ = std::make_unique<Dresser>(request.dress, *changes_);
    }
  }

  /// Nothing is written before all is found: what an NFO file tells would change what is found
  /// next.
  void run() {
    forEach(&Scan::find);
    for (; written_ < rows_.size() && error_.empty(); ++written_) {  // what Ctrl-C left
      if (rows_[written_]) {
        show(*rows_[written_]);
      }
    }
    if (dresser_ && error_.empty()) {
      forEach(&Scan::dress);
    }
    messages_.showProgress("");
  }

  bool end() {
    if (report_) {
      for (const std::optional<ScanRow>& row : rows_) {
        if (row) {
          report_->add(*row);
        }
      }
      report_->write();
    }
    return writer_->end();
  }
  bool interrupted() const { return interruption_.wanted(); }
  const Tally& tally() const { return tally_; }

  /// What was written, or would be; empty where nothing was asked for.
  std::string changes(bool dryRun) const {
    if (!changes_) {
      return {};
    }
    if (changes_->count() == 0) {
      return "nothing to change";
    }
    const std::string count = std::to_string(changes_->count());
    return dryRun ? count + " changes would be made"
                  : count + " changes; \"quilp scan --undo " + changes_->journal() +
                        "\" takes them back";
  }
  const std::string& error() const { return error_; }

  /// Where there is no match at all.
  void sayWhy() const {
    if (tally_.matched() == 0 && !items_.empty()) {
      messages_.say(whyNothing(finder_.whyNothing(), requestOf(items_.front().kind).media));
    }
  }

 private:
  using Step = void (Scan::*)(std::size_t item);

  void forEach(Step step) {
    next_ = 0;
    std::vector<std::thread> threads;
    for (int i = 1; i < jobs_; ++i) {
      threads.emplace_back([this, step] { work(step); });
    }
    work(step);
    for (std::thread& thread : threads) {
      thread.join();
    }
  }

  void work(Step step) {
    try {
      for (std::size_t i; !interruption_.wanted() && (i = next_++) < items_.size();) {
        (this->*step)(i);
      }
    } catch (const std::exception& error) {
      const std::lock_guard<std::mutex> lock(mutex_);
      error_ = error.what();
      next_ = items_.size();
    }
  }

  void find(std::size_t i) {
    const ScanRow* known = memory_.find(items_[i].path);
    ScanRow row = known != nullptr ? *known : finder_.find(items_[i]);
    row.file = items_[i].path;  // as it is given now
    const std::lock_guard<std::mutex> lock(mutex_);
    if (known == nullptr) {
      memory_.add(row);
    }
    if (row.failed && ++told_[row.failure] <= kMostAlike) {
      messages_.say(row.file + ": " + row.failure);
    }
    messages_.showProgress(tally_.progress(items_.size()) + ' ' + row.file);
    rows_[i] = std::move(row);
    for (std::size_t end; written_ < rows_.size() && isFound(end = groupEnds_[written_]);) {
      settleShow(finder_, items_, rows_, written_, end);
      for (; written_ < end; ++written_) {
        show(*rows_[written_]);
      }
    }
  }

  /// Whether all items from the first that was not shown are.
  bool isFound(std::size_t end) const {
    return std::all_of(rows_.begin() + static_cast<std::ptrdiff_t>(written_),
                       rows_.begin() + static_cast<std::ptrdiff_t>(end),
                       [](const std::optional<ScanRow>& row) { return row.has_value(); });
  }

  void show(ScanRow& row) {
    tally_.add(row);
    if (!writer_->add(row)) {
      throw std::runtime_error("cannot write");  // further results could not be seen
    }
    if (!report_) {  // which wants the pictures that are written later
      row.candidates = {};
    }
  }

  void dress(std::size_t i) {
    dresser_->dress(items_[i], *rows_[i]);
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const std::string& message : dresser_->takeMessages()) {
      messages_.say(message);
    }
  }

  Finder finder_;
  const int jobs_;
  const Messages messages_;
  Interruption interruption_{messages_};
  const std::vector<MediaItem> items_;
  const std::vector<std::size_t> groupEnds_;
  std::vector<std::optional<ScanRow>> rows_;  // of the items that were looked up
  Memory memory_;
  std::unique_ptr<RowWriter> writer_;
  std::unique_ptr<ReportPage> report_;  // null: none is wanted
  std::unique_ptr<Changes> changes_;    // null: nothing is written
  std::unique_ptr<Dresser> dresser_;
  std::atomic<std::size_t> next_{0};
  std::mutex mutex_;  // for what follows, and for memory and writer
  std::size_t written_ = 0;
  Tally tally_;
  std::map<std::string, int> told_;  // failures, and how often
  std::string error_;
};

}  // namespace

int scan(const ScanRequest& request) {
  Limited::setSeconds(request.timeout);
  MediaFiles files = mediaFilesOf(request.paths);
  if (request.paths.size() == 1 && request.listed.empty() && files.nothingRead) {
    throw std::runtime_error("cannot read " + files.failures.front());
  }
  for (const std::string& failure : files.failures) {
    tell(failure);
  }
  files.paths.insert(files.paths.end(), request.listed.begin(), request.listed.end());
  MediaItems items = itemsOf(files.paths, request.kind);
  const std::size_t extras = items.extras;
  Scan scan(request, std::move(items.items));
  scan.run();
  if (!scan.end() || !scan.error().empty()) {
    throw std::runtime_error(scan.error().empty() ? "cannot write" : scan.error());
  }
  tell(scan.tally().summary(extras));
  tell(scan.changes(request.dryRun));
  if (scan.interrupted()) {
    return kInterrupted;
  }
  const auto failures =
      static_cast<int>(std::min(scan.tally().failures() + files.failures.size(), kMostFailures));
  if (failures == 0) {
    scan.sayWhy();
  }
  return failures > 0 ? kFailures + failures : 0;
}

}  // namespace quilp
