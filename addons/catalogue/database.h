#pragma once

#include <sqlite3.h>
#include <sys/stat.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace quilp::catalogue {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

/// Throws std::runtime_error if there is a folder, a device or a FIFO in a file's place.
inline void refuseSpecialFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    throw std::runtime_error(path + ": no regular file");
  }
}

}  // namespace quilp::catalogue
