#include "process/leftovers.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace quilp {
namespace {

namespace fs = std::filesystem;

template <class Visit>
void forEachPath(const std::string& folder, Visit visit) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    visit(entry->path().string());
  }
}

bool isOurs(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0 && status.st_uid == geteuid();
}

/// A document, or a working folder, of a call that goes on at the same time.
bool isOfAnotherCall(std::string_view path) {
  constexpr std::string_view kDocument = "/tmp/libquilp.";
  constexpr std::string_view kFolder = "/tmp/quilp-check.";
  constexpr std::size_t kRandom = 6;
  const auto startsAs = [path](std::string_view prefix) {
    return path.substr(0, prefix.size()) == prefix && path.size() == prefix.size() + kRandom;
  };
  return startsAs(kDocument) || startsAs(kFolder);
}

}  // namespace

Leftovers::Leftovers(std::string workingFolder, std::string document)
    : workingFolder_(std::move(workingFolder)), document_(std::move(document)) {
  sharedFolders_ = {"/tmp", "/var/tmp"};
  const char* temporary = std::getenv("TMPDIR");
  if (temporary != nullptr && *temporary == '/') {
    sharedFolders_.emplace_back(fs::path(temporary).lexically_normal().string());
  }
  for (const std::string& folder : sharedFolders_) {
    forEachPath(folder, [this](const std::string& path) { before_.insert(path); });
  }
}

std::vector<std::string> Leftovers::collect() const {
  std::set<std::string> left;
  std::error_code ignored;
  forEachPath(workingFolder_, [&](const std::string& path) {
    left.insert(fs::path(path).filename().string() + " in the working folder");
    fs::remove_all(path, ignored);
  });
  for (const std::string& folder : sharedFolders_) {
    forEachPath(folder, [&](const std::string& path) {
      if (path == document_ || before_.count(path) > 0 || isOfAnotherCall(path) || !isOurs(path)) {
        return;
      }
      left.insert(path);
      if (path.compare(0, document_.size(), document_) == 0) {
        fs::remove_all(path, ignored);
      }
    });
  }
  return {left.begin(), left.end()};
}

}  // namespace quilp
