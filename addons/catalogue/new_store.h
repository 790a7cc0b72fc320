#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tables.h"

namespace quilp::catalogue {

/// A catalogue that is being written beside the one in use. It takes that one's place in finish();
/// without that nothing of it is left. Throws std::runtime_error.
class NewStore {
 public:
  NewStore() = default;
  virtual ~NewStore() = default;
  NewStore(const NewStore&) = delete;
  NewStore& operator=(const NewStore&) = delete;

  virtual std::string place() const = 0;  // for people; without a password
  virtual void meta(std::string_view name, std::string_view value) = 0;
  virtual void word(std::string_view text, const Word& word) = 0;

  /// Keys of one table must ascend; its rows are written one after another.
  virtual void insert(const char* table, std::uint64_t key, std::string_view value) = 0;

  /// Writes all to the disk, checks it, and puts it in place.
  virtual void finish() = 0;
};

/// A catalogue file. Throws also where another import writes it.
std::unique_ptr<NewStore> newFile(const std::string& path);

/// A data set on a server.
std::unique_ptr<NewStore> newOnServer(const std::string& address);

}  // namespace quilp::catalogue
