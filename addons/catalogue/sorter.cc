#include "sorter.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace quilp::catalogue {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::size_t kRunBuffer = std::size_t{1} << 18;
constexpr std::size_t kLeastRunBuffer = std::size_t{1} << 14;

struct Sizes {
  std::uint32_t key;
  std::uint32_t value;
};

Sizes sizesOf(const char* record) {
  Sizes sizes{};
  std::memcpy(&sizes, record, sizeof sizes);
  return sizes;
}

std::string_view keyOf(const char* record) { return {record + sizeof(Sizes), sizesOf(record).key}; }

std::string_view valueOf(const char* record) {
  const Sizes sizes = sizesOf(record);
  return {record + sizeof(Sizes) + sizes.key, sizes.value};
}

std::uint64_t prefixOf(std::string_view key) {
  std::uint64_t prefix = 0;
  for (std::size_t i = 0; i < 8; ++i) {
    prefix = prefix << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
  }
  return prefix;
}

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// A file without a name: nothing is left of it, however the process ends.
int temporaryFile(const std::string& folder) {
  int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (file < 0) {
    std::string name = folder + "/quilp-sort.XXXXXX";
    file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) {
      fail("cannot make a temporary file in " + folder);
    }
    unlink(name.c_str());
  }
  return file;
}

void writeAll(int file, const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t written = write(file, bytes, size);
    if (written < 0 && errno != EINTR) {
      fail("cannot write a temporary file");
    }
    if (written > 0) {
      bytes += written;
      size -= static_cast<std::size_t>(written);
    }
  }
}

}  // namespace

/// A sorted run in a file, read from its start.
class Sorter::Run {
 public:
  explicit Run(int file) : file_(file) {}
  ~Run() { close(file_); }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  void write(std::string_view record) {
    if (buffer_.size() + record.size() > kRunBuffer) {
      flush();
    }
    buffer_ += record;
  }
  void flush() {
    writeAll(file_, buffer_.data(), buffer_.size());
    buffer_.clear();
  }
  /// Ends writing.
  void finish() {
    flush();
    std::string().swap(buffer_);
  }
  /// Starts reading, so many bytes at a time.
  void rewind(std::size_t buffer) {
    readSize_ = buffer;
    if (lseek(file_, 0, SEEK_SET) != 0) {
      fail("cannot read a temporary file");
    }
  }
  bool next() {
    start_ += recordSize_;
    recordSize_ = 0;
    if (!have(sizeof(Sizes))) {
      return false;
    }
    const Sizes sizes = sizesOf(buffer_.data() + start_);
    const std::size_t size = sizeof sizes + sizes.key + sizes.value;
    if (!have(size)) {
      return false;
    }
    recordSize_ = size;
    entry_ = {prefixOf(keyOf(buffer_.data() + start_)), buffer_.data() + start_};
    return true;
  }
  const Entry& entry() const { return entry_; }

 private:
  bool have(std::size_t size) {
    while (buffer_.size() - start_ < size) {
      buffer_.erase(0, start_);
      start_ = 0;
      const std::size_t held = buffer_.size();
      buffer_.resize(std::max(size, readSize_));
      const ssize_t got = read(file_, buffer_.data() + held, buffer_.size() - held);
      buffer_.resize(held + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
      if (got < 0 && errno != EINTR) {
        fail("cannot read a temporary file");
      }
      if (got == 0) {
        return false;
      }
    }
    return true;
  }

  int file_;
  std::string buffer_;
  std::size_t readSize_ = kRunBuffer;
  std::size_t start_ = 0;
  std::size_t recordSize_ = 0;
  Entry entry_{};
};

Sorter::Sorter(std::size_t memory, std::string folder)
    : memory_(std::max(memory, 4 * kBlock)), folder_(std::move(folder)) {}

Sorter::~Sorter() = default;

bool Sorter::less(const Entry& a, const Entry& b) {
  if (a.prefix != b.prefix) {
    return a.prefix < b.prefix;
  }
  const int order = keyOf(a.record).compare(keyOf(b.record));
  return order != 0 ? order < 0 : valueOf(a.record) < valueOf(b.record);
}

char* Sorter::room(std::size_t size) {
  if (size > freeBytes_) {
    const std::size_t block = std::max(size, kBlock);
    // The entries take as much again for a moment when they grow.
    if (!entries_.empty() &&
        blockBytes_ + block + 2 * entries_.capacity() * sizeof(Entry) > memory_) {
      spill();
    }
    blockBytes_ += block;
    if (block > kBlock) {
      large_.emplace_back(new char[block]);
      return large_.back().get();
    }
    if (usedBlocks_ == blocks_.size()) {
      blocks_.emplace_back(new char[kBlock]);
    }
    free_ = blocks_[usedBlocks_++].get();
    freeBytes_ = kBlock;
  }
  char* const record = free_;
  free_ += size;
  freeBytes_ -= size;
  return record;
}

void Sorter::add(std::string_view key, std::string_view value) {
  const Sizes sizes = {static_cast<std::uint32_t>(key.size()),
                       static_cast<std::uint32_t>(value.size())};
  char* const record = room(sizeof sizes + key.size() + value.size());
  std::memcpy(record, &sizes, sizeof sizes);
  std::copy(key.begin(), key.end(), record + sizeof sizes);
  std::copy(value.begin(), value.end(), record + sizeof sizes + key.size());
  entries_.push_back({prefixOf(key), record});
}

void Sorter::sortEntries() { std::sort(entries_.begin(), entries_.end(), less); }

void Sorter::spill() {
  sortEntries();
  auto run = std::make_unique<Run>(temporaryFile(folder_));
  for (const Entry& entry : entries_) {
    const Sizes sizes = sizesOf(entry.record);
    run->write({entry.record, sizeof sizes + sizes.key + sizes.value});
  }
  run->finish();
  runs_.push_back(std::move(run));
  entries_.clear();
  large_.clear();
  usedBlocks_ = blockBytes_ = freeBytes_ = 0;  // blocks are kept for the next run
}

void Sorter::sort() {
  if (runs_.empty()) {
    sortEntries();
    return;
  }
  spill();
  std::vector<Entry>().swap(entries_);
  blocks_.clear();
  const std::size_t buffer = std::clamp(memory_ / (2 * runs_.size()), kLeastRunBuffer, kRunBuffer);
  auto ended = std::remove_if(runs_.begin(), runs_.end(), [buffer](std::unique_ptr<Run>& run) {
    run->rewind(buffer);
    return !run->next();
  });
  runs_.erase(ended, runs_.end());
  std::make_heap(runs_.begin(), runs_.end(),
                 [](const auto& a, const auto& b) { return less(b->entry(), a->entry()); });
  nextEntry_ = 0;
  key_ = {};
}

bool Sorter::next() {
  const char* record = nullptr;
  if (!entries_.empty() || runs_.empty()) {
    if (nextEntry_ == entries_.size()) {
      return false;
    }
    record = entries_[nextEntry_++].record;
  } else {
    const auto later = [](const auto& a, const auto& b) { return less(b->entry(), a->entry()); };
    if (nextEntry_++ > 0) {  // the record given last is done with only now
      std::pop_heap(runs_.begin(), runs_.end(), later);
      if (runs_.back()->next()) {
        std::push_heap(runs_.begin(), runs_.end(), later);
      } else {
        runs_.pop_back();
      }
    }
    if (runs_.empty()) {
      nextEntry_ = 0;
      return false;
    }
    record = runs_.front()->entry().record;
  }
  key_ = keyOf(record);
  value_ = valueOf(record);
  return true;
}

}  // namespace quilp::catalogue
