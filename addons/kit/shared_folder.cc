#include "shared_folder.h"

#include <sys/stat.h>
#include <unistd.h>

namespace quilp::kit {

bool isShared(const std::string& folder) {
  constexpr mode_t kForGroup = S_ISGID | S_IWGRP;
  struct stat status {};
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == 0 &&
         (status.st_mode & kForGroup) == kForGroup && (status.st_mode & S_IWOTH) == 0;
}

void shareFile(int file, const std::string& folder) {
  struct stat status {};
  if (file >= 0 && isShared(folder) && fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
      status.st_uid == geteuid() && status.st_nlink == 1 && (status.st_mode & S_IWGRP) == 0) {
    static_cast<void>(fchmod(file, 0664));
  }
}

}  // namespace quilp::kit
