#include "scan/tally.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quilp {
namespace {

constexpr std::size_t kMostCauses = 3;
constexpr double kSecondsBeforeRate = 2;

}  // namespace

void Tally::add(const ScanRow& row) {
  ++done_;
  if (row.failed) {
    ++failures_;
  }
  if (row.unknown()) {
    ++unknown_;
    ++causes_[row.reason];
  } else {
    ++(row.sure ? sure_ : unsure_);
  }
}

std::string Tally::progress(std::size_t all) const {
  std::string text = std::to_string(done_) + '/' + std::to_string(all);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
  if (elapsed.count() >= kSecondsBeforeRate && done_ > 0) {
    const double rate = static_cast<double>(done_) / elapsed.count();
    text += ", " + std::to_string(static_cast<long>(rate)) + " a second, " +
            std::to_string(static_cast<long>(static_cast<double>(all - done_) / rate)) + " s left";
  }
  return text;
}

std::string Tally::summary(std::size_t extras) const {
  std::string text = std::to_string(done_) + (done_ == 1 ? " item: " : " items: ") +
                     std::to_string(sure_) + " sure, " + std::to_string(unsure_) + " unsure, " +
                     std::to_string(unknown_) + " unknown";
  std::vector<std::pair<std::size_t, std::string>> causes;
  for (const auto& [cause, count] : causes_) {
    causes.emplace_back(count, cause);
  }
  std::sort(causes.rbegin(), causes.rend());
  for (std::size_t i = 0; i < causes.size() && i < kMostCauses; ++i) {
    text += (i == 0 ? " (" : "; ") + causes[i].second + ": " + std::to_string(causes[i].first);
  }
  text += causes.empty() ? "" : ")";
  return extras == 0 ? text : text + "; left out as extras: " + std::to_string(extras);
}

}  // namespace quilp
