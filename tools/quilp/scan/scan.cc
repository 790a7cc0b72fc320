#include "scan/scan.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "output/message.h"
#include "platform/why_nothing.h"
#include "scan/interruption.h"
#include "scan/journal.h"
#include "scan/lookup.h"
#include "scan/media_files.h"
#include "scan/messages.h"
#include "scan/row_writer.h"

namespace quilp {
namespace {

constexpr int kFailures = 100;  // the exit status for one failure is one more
constexpr std::size_t kMostFailures = 25;
constexpr int kInterrupted = 130;  // as a shell has it

/// Looks the files up concurrently and prints the rows in the order of the files.
class Scan {
 public:
  Scan(const ScanRequest& request, std::vector<std::string> files)
      : lookUp_{request.type, hasAddOn(request.type), request.candidates},
        jobs_(lookUp_.byAddOn ? request.jobs : 1),
        files_(std::move(files)),
        rows_(files_.size()),
        journal_(request.journal, std::to_string(static_cast<int>(request.type)) + '/' +
                                      std::to_string(request.candidates)),
        writer_(makeRowWriter(request.format,
                              request.paths.size() == 1 ? request.paths.front() : "")) {}

  void run() {
    std::vector<std::thread> threads;
    for (int i = 1; i < jobs_; ++i) {
      threads.emplace_back([this] { work(); });
    }
    work();
    for (std::thread& thread : threads) {
      thread.join();
    }
    messages_.showProgress("");
  }

  bool end() { return writer_->end(); }
  bool interrupted() const { return interruption_.wanted(); }

  /// Where there is no match at all.
  void sayWhy() const {
    if (matches_ == 0 && done_ > 0) {
      messages_.say(whyNothing(firstAnswer_, requestOf(lookUp_.type).media));
    }
  }

  std::size_t failures() const { return failures_; }
  const std::string& error() const { return error_; }

 private:
  void work() {
    try {
      for (std::size_t i; !interruption_.wanted() && (i = next_++) < files_.size();) {
        const ScanRow* known = journal_.find(files_[i]);
        take(i, known != nullptr ? *known : lookUp_(files_[i]), known == nullptr);
      }
    } catch (const std::exception& error) {
      const std::lock_guard<std::mutex> lock(mutex_);
      error_ = error.what();
      next_ = files_.size();
    }
  }

  void take(std::size_t i, ScanRow row, bool isNew) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (isNew) {
      journal_.add(row);
    }
    if (row.failed) {
      ++failures_;
      messages_.say(row.file + ": " + row.failure());
    }
    if (!isUnsettled(firstAnswer_)) {
      firstAnswer_ = row.answer;
    }
    ++done_;
    matches_ += row.match.empty() ? 0 : 1;
    messages_.showProgress(std::to_string(done_) + '/' + std::to_string(files_.size()) + ' ' +
                           row.file);
    rows_[i] = std::move(row);
    for (; written_ < rows_.size() && rows_[written_]; ++written_) {
      if (!writer_->add(*rows_[written_])) {
        throw std::runtime_error("cannot write");  // further results could not be seen
      }
    }
  }

  const Lookup lookUp_;
  const int jobs_;
  const Messages messages_;
  Interruption interruption_{messages_};
  const std::vector<std::string> files_;
  std::vector<std::optional<ScanRow>> rows_;  // of the files that were looked up
  Journal journal_;
  std::unique_ptr<RowWriter> writer_;
  std::atomic<std::size_t> next_{0};
  std::mutex mutex_;  // for what follows, and for journal and writer
  std::size_t done_ = 0;
  std::size_t written_ = 0;
  std::size_t failures_ = 0;
  std::size_t matches_ = 0;
  libquilp::Answer firstAnswer_;  // the first that says more than "nothing found", or any
  std::string error_;
};

}  // namespace

int scan(const ScanRequest& request) {
  MediaFiles files = mediaFilesOf(request.paths, request.type);
  if (request.paths.size() == 1 && files.nothingRead) {
    throw std::runtime_error("cannot read " + files.failures.front());
  }
  for (const std::string& failure : files.failures) {
    tell(failure);
  }
  const auto failedPaths = files.failures.size();
  Scan scan(request, std::move(files.paths));
  scan.run();
  if (!scan.end() || !scan.error().empty()) {
    throw std::runtime_error(scan.error().empty() ? "cannot write" : scan.error());
  }
  if (scan.interrupted()) {
    return kInterrupted;
  }
  const auto failures = static_cast<int>(std::min(scan.failures() + failedPaths, kMostFailures));
  if (failures == 0) {
    scan.sayWhy();
  }
  return failures > 0 ? kFailures + failures : 0;
}

}  // namespace quilp
