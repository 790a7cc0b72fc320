#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quilp::catalogue {

struct Word {
  std::uint32_t number = 0;
  std::uint32_t names = 0;  // how many have it
};

struct FoundWord {
  std::string text;
  Word word;
};

/// The tables of a catalogue (layout.h), for reading: of a file or of a server. Used by one thread
/// at a time. All of them are of one data set, whatever is imported meanwhile. Throws Damaged, or
/// std::runtime_error where a server cannot be reached.
class Tables {
 public:
  Tables() = default;
  virtual ~Tables() = default;
  Tables(const Tables&) = delete;
  Tables& operator=(const Tables&) = delete;

  virtual std::string place() = 0;  // for people; without a password
  virtual std::map<std::string, std::string> meta() = 0;
  virtual std::uint64_t bytes() = 0;  // of all of them, on the disk
  virtual std::optional<std::string> row(const char* table, std::uint64_t key) = 0;
  virtual std::string rowStart(const char* table, std::uint64_t key, std::size_t limit) = 0;
  virtual std::vector<std::uint64_t> keys(const char* table, std::uint64_t first,
                                          std::uint64_t end) = 0;
  virtual std::optional<Word> word(std::string_view text) = 0;
  virtual std::vector<FoundWord> wordsFrom(std::string_view prefix, std::size_t limit) = 0;

  /// What is read next. A server is then asked once for all of it; a file takes no notice.
  using Keys = std::vector<std::uint64_t>;
  using Texts = std::vector<std::string>;
  virtual void prefetch(const char* /*table*/, const Keys& /*keys*/) {}
  virtual void prefetchStarts(const char* /*table*/, const Keys& /*keys*/, std::size_t /*limit*/) {}
  virtual void prefetchWords(const Texts& /*texts*/) {}
};

/// The tables of a catalogue file.
std::unique_ptr<Tables> openFile(const std::string& path);

/// Those of the data set that a server has in use, by its address. A program that is linked without
/// libpq becomes another one here, which is not.
std::unique_ptr<Tables> openServer(const std::string& address);

/// Not a file: "postgresql://USER@HOST/DATABASE".
inline bool isServer(std::string_view address) {
  return address.substr(0, 13) == "postgresql://" || address.substr(0, 11) == "postgres://";
}

}  // namespace quilp::catalogue
