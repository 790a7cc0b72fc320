#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "inflate.h"

namespace quilp::catalogue {

/// The rows of one data set are not in the order of their identifiers.
struct OutOfOrder {
  std::string path;
};

/// What one data set had that is no row: counted, and the first few named.
struct Broken {
  std::uint64_t rows = 0;
  std::uint64_t count = 0;
  std::vector<std::string> samples{};

  void add(const std::string& where);
};

/// The rows of a data set: tab-separated columns under a header. A thread of its own reads ahead.
/// Throws std::runtime_error, which names the file.
class Rows {
 public:
  enum class Order { kChecked, kAny };

  /// Gives the named columns, in this order. The first one is the identifier.
  Rows(const std::string& path, const std::vector<std::string_view>& columns,
       Order order = Order::kChecked);
  ~Rows();
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;

  /// Takes the next good row; counts others. Throws OutOfOrder where the identifiers do not ascend
  /// as text.
  bool next();

  /// Empty for \N. Valid until the next row.
  std::string_view operator[](std::size_t column) const { return values_[column]; }
  std::string_view id() const { return values_[0]; }

  /// The present row is not what it should be.
  void reject(std::string_view why);

  const Broken& broken() const { return broken_; }
  std::uint64_t consumed() const { return source_.consumed(); }

 private:
  struct Block {
    std::string text;
    bool last = false;
    std::exception_ptr error{};
  };

  void readAhead();
  bool push(Block block);
  std::string spare();
  bool nextBlock();
  bool nextLine(std::string_view& line);
  bool split(std::string_view line);

  std::string path_;
  ByteSource source_;
  std::vector<std::string_view> values_;
  std::vector<int> places_;  // of each column of the file: which value, or -1
  Order order_;
  std::string lastId_;
  std::uint64_t line_ = 0;
  Broken broken_;

  Block block_;
  std::size_t position_ = 0;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Block> queue_;
  std::string spare_;
  bool stopped_ = false;
  std::thread thread_;
};

}  // namespace quilp::catalogue
