#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include "command/catalogue_file.h"
#include "command/commands.h"
#include "command/options.h"
#include "fetch/download.h"
#include "kit/settings.h"
#include "output/duration.h"
#include "output/exit_status.h"
#include "output/message.h"
#include "platform.h"
#include "scan/messages.h"

namespace quilp {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSignalled = 128;

constexpr const char* kFiles[] = {"title.basics",  "title.akas", "title.episode",
                                  "title.ratings", "title.crew", "title.principals",
                                  "name.basics"};

void printTerms() {
  std::printf(
      "The data sets belong to IMDb. Its terms allow personal and non-commercial use. You\n"
      "download them for yourself: do not pass them on. Wherever their contents are shown, it\n"
      "wants this line beside them:\n"
      "    %s\n"
      "The owner's own text of the terms holds, not this summary.\n",
      catalogueAttribution());
  std::fflush(stdout);
}

std::string baseAddress() {
  std::string base = kit::Settings().get("catalogue", "base", libquilp::kDataSetsBase);
  if (base.compare(0, 8, "https://") != 0 && base.compare(0, 7, "http://") != 0) {
    throw std::runtime_error("the setting base of [catalogue], \"" + base +
                             "\", does not begin with https:// or http://");
  }
  return base.back() == '/' ? base : base + '/';
}

/// A folder that one fetch at a time writes to.
class Folder {
 public:
  explicit Folder(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
      throw std::runtime_error(path + ": " + error.message());
    }
    file_ = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file_ < 0 || faccessat(AT_FDCWD, path.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
      throw std::runtime_error(path + ": " + std::strerror(errno));
    }
    if (flock(file_, LOCK_EX | LOCK_NB) != 0) {
      throw std::runtime_error(path + ": another fetch is writing to it");
    }
  }
  ~Folder() { close(file_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

 private:
  int file_ = -1;
};

std::string megabytes(std::uint64_t bytes) { return std::to_string(bytes / 1000000) + " MB"; }

/// A line of progress for each file.
class FetchTeller {
 public:
  void start(const std::string& name, std::size_t number) {
    label_ = std::to_string(number) + " of " + std::to_string(std::size(kFiles)) + ", " + name;
    start_ = Clock::now();
    first_ = kUnknown;
  }
  void show(std::uint64_t bytes, std::uint64_t total) {
    first_ = first_ == kUnknown ? bytes : first_;
    const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
    std::string line = label_ + ": " + megabytes(bytes);
    if (total > 0 && bytes <= total) {
      line += " of " + megabytes(total) + ", " + std::to_string(bytes * 100 / total) + " %";
    }
    if (total > bytes && bytes > first_ && seconds > 1) {
      const auto rate = static_cast<double>(bytes - first_) / seconds;
      line += ", " + minutesAndSeconds(static_cast<double>(total - bytes) / rate) + " left";
    }
    messages_.showProgress(line);
  }
  void clear() const { messages_.showProgress(""); }

 private:
  static constexpr std::uint64_t kUnknown = UINT64_MAX;

  std::string label_;
  Clock::time_point start_;
  std::uint64_t first_ = kUnknown;
  Messages messages_;
};

/// Returns the exit status.
int fetchAll(const std::string& folder) {
  const std::string base = baseAddress();
  const Folder lock(folder);
  const std::string prefix = folder + '/';
  Curl curl;
  FetchTeller teller;
  int status = 0;
  std::size_t number = 0;
  for (const char* const dataSet : kFiles) {
    const std::string name = std::string(dataSet) + ".tsv.gz";
    teller.start(name, ++number);
    const Downloaded result = download(
        curl, base + name, prefix + name,
        [&teller](std::uint64_t bytes, std::uint64_t total) { teller.show(bytes, total); });
    teller.clear();
    switch (result.outcome) {
      case Downloaded::Outcome::kNew:
        std::printf("%s: %s\n", name.c_str(), megabytes(result.bytes).c_str());
        break;
      case Downloaded::Outcome::kUnchanged:
        std::printf("%s: unchanged\n", name.c_str());
        break;
      case Downloaded::Outcome::kInterrupted:
        tell("interrupted; the same command goes on where this one ended");
        return kSignalled + curl.signal();
      case Downloaded::Outcome::kFailed:
        tell(name + ": " + result.reason);
        status = status != 0 ? status : result.status;
    }
    std::fflush(stdout);
    if (result.isFinal) {
      tell("the same command goes on where this one ended");
      return status;
    }
  }
  return status;
}

}  // namespace

void addCatalogueFetch(Command& catalogue) {
  static std::string folder;
  static bool accepted = false;
  Command& command = catalogue.add("fetch", "Download the data sets, or what changed of them");
  command.operands.push_back({"DIR", "Folder for the files; made if need be", toText(folder)});
  command.options.push_back({0, "accept-terms", "", "Accept the terms that the command prints",
                             [](const std::string&) { accepted = true; }});
  command.run = [] {
    printTerms();
    if (!accepted) {
      throw WrongUsage("nothing was downloaded; to accept these terms, add --accept-terms");
    }
    return fetchAll(folder);
  };
}

}  // namespace quilp
