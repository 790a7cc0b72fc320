#include "rows.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace quilp::catalogue {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 18;
constexpr std::size_t kQueue = 3;
constexpr std::size_t kLongestLine = std::size_t{1} << 20;
constexpr std::size_t kSamples = 20;

}  // namespace

void Broken::add(const std::string& where) {
  ++count;
  if (samples.size() < kSamples) {
    samples.push_back(where);
  }
}

Rows::Rows(const std::string& path, const std::vector<std::string_view>& columns, Order order)
    : path_(path), source_(path), values_(columns.size()), order_(order), thread_([this] {
        readAhead();
      }) {
  try {
    std::string_view line;
    if (!nextLine(line)) {
      throw std::runtime_error(path_ + ": the file is empty");
    }
    std::size_t found = 0;
    while (true) {
      const std::size_t end = std::min(line.find('\t'), line.size());
      const auto column = std::find(columns.begin(), columns.end(), line.substr(0, end));
      places_.push_back(column == columns.end() ? -1 : static_cast<int>(column - columns.begin()));
      found += column == columns.end() ? 0 : 1;
      if (end == line.size()) {
        break;
      }
      line.remove_prefix(end + 1);
    }
    if (found != columns.size()) {
      std::string names;
      for (const std::string_view name : columns) {
        names.append(names.empty() ? "" : ", ").append(name);
      }
      throw std::runtime_error(path_ + ": the first line does not name the columns " + names);
    }
  } catch (...) {
    {
      const std::lock_guard lock(mutex_);
      stopped_ = true;
    }
    changed_.notify_all();
    thread_.join();
    throw;
  }
}

Rows::~Rows() {
  {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

bool Rows::push(Block block) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return stopped_ || queue_.size() < kQueue; });
  queue_.push_back(std::move(block));
  changed_.notify_all();
  return !stopped_;
}

/// The room of a block that was read, for another.
std::string Rows::spare() {
  const std::lock_guard lock(mutex_);
  std::string text = std::move(spare_);
  spare_.clear();
  text.clear();
  return text;
}

/// Cuts the file into blocks of whole lines.
void Rows::readAhead() {
  try {
    std::string rest;
    while (true) {
      Block block;
      block.text = spare();
      block.text.swap(rest);
      const std::size_t held = block.text.size();
      block.text.resize(held + kBlock);
      const std::size_t got = source_.read(block.text.data() + held, kBlock);
      block.text.resize(held + got);
      block.last = got == 0;
      if (!block.last) {
        const std::size_t end = block.text.rfind('\n') + 1;
        if (end == 0 && block.text.size() > kLongestLine) {
          throw std::runtime_error(path_ + ": a line is longer than 1 MB");
        }
        rest.assign(block.text, end, std::string::npos);
        block.text.resize(end);
      }
      const bool last = block.last;
      if (!push(std::move(block)) || last) {
        return;
      }
    }
  } catch (...) {
    Block block;
    block.last = true;
    block.error = std::current_exception();
    push(std::move(block));
  }
}

bool Rows::nextBlock() {
  if (block_.last) {
    return false;
  }
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return !queue_.empty(); });
  spare_ = std::move(block_.text);
  block_ = std::move(queue_.front());
  queue_.pop_front();
  changed_.notify_all();
  if (block_.error) {
    std::rethrow_exception(block_.error);
  }
  position_ = 0;
  return true;
}

bool Rows::nextLine(std::string_view& line) {
  while (position_ >= block_.text.size()) {
    if (!nextBlock()) {
      return false;
    }
  }
  const std::string_view rest = std::string_view(block_.text).substr(position_);
  const std::size_t size = std::min(rest.find('\n'), rest.size());
  line = rest.substr(0, size);
  position_ += size + 1;
  ++line_;
  if (!line.empty() && line.back() == '\r') {
    line.remove_suffix(1);
  }
  return true;
}

bool Rows::split(std::string_view line) {
  std::size_t column = 0;
  for (const char *start = line.data(), *const last = start + line.size();; ++column) {
    const auto* const tab =
        static_cast<const char*>(std::memchr(start, '\t', static_cast<std::size_t>(last - start)));
    const char* const end = tab == nullptr ? last : tab;
    if (column == places_.size()) {
      return false;
    }
    if (places_[column] >= 0) {
      const std::string_view value(start, static_cast<std::size_t>(end - start));
      values_[static_cast<std::size_t>(places_[column])] = value == "\\N" ? "" : value;
    }
    if (tab == nullptr) {
      return column + 1 == places_.size() && !values_[0].empty();
    }
    start = tab + 1;
  }
}

void Rows::reject(std::string_view why) {
  broken_.add(path_ + ':' + std::to_string(line_) + ": " + std::string(why));
}

bool Rows::next() {
  std::string_view line;
  while (nextLine(line)) {
    if (line.empty()) {
      continue;
    }
    ++broken_.rows;
    if (!split(line)) {
      reject("not " + std::to_string(places_.size()) + " columns with an identifier");
      continue;
    }
    if (order_ == Order::kChecked) {
      if (values_[0] < lastId_) {
        throw OutOfOrder{path_};
      }
      lastId_ = values_[0];
    }
    return true;
  }
  return false;
}

}  // namespace quilp::catalogue
