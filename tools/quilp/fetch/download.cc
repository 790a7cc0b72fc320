#include "fetch/download.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "fetch/headers.h"
#include "lookup/answer.h"
#include "platform.h"

namespace quilp {
namespace {

using Outcome = Downloaded::Outcome;

// Exit statuses of curl.
constexpr int kHttpError = 22;
constexpr int kCannotWrite = 23;
constexpr int kNoRange = 33;
constexpr std::array kBrokenOff = {16, 18, 28, 55, 56, 92};

constexpr int kUseless = 1;     // what came, or it cannot be put in place
constexpr int kMostTurns = 20;  // that each bring something

std::uint64_t sizeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool isGzip(const std::string& path) {
  std::FILE* const file = std::fopen(path.c_str(), "rbe");
  const bool is = file != nullptr && std::fgetc(file) == 0x1f && std::fgetc(file) == 0x8b;
  if (file != nullptr) {
    std::fclose(file);
  }
  return is;
}

bool sync(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const bool done = file >= 0 && fsync(file) == 0;
  if (file >= 0) {
    close(file);
  }
  return done;
}

std::string hostOf(const std::string& address) {
  const std::size_t start = address.find("//") + 2;
  return address.substr(start, address.find('/', start) - start);
}

bool isFull(const std::string& file) {
  struct statvfs status {};
  return statvfs(file.substr(0, file.rfind('/')).c_str(), &status) == 0 &&
         status.f_bavail * status.f_frsize < 1U << 20;
}

class Download {
 public:
  Download(Curl& curl, const std::string& address, const std::string& file,
           const ShowDownload& show)
      : curl_(curl), address_(address), file_(file), show_(show) {}

  Downloaded run();

 private:
  /// Runs curl once.
  int fetch(const std::vector<std::string>& options, const std::string& headers);
  int resume();
  int begin();
  void forget();
  Downloaded finish();
  Downloaded failure(int status);

  Curl& curl_;
  const std::string& address_;
  const std::string& file_;
  const ShowDownload& show_;
  const std::string part_ = file_ + ".part";
  const std::string partHeaders_ = part_ + ".headers";
  const std::string otherHeaders_ = part_ + ".answer";  // to a request for the rest
  Headers answer_;
};

int Download::fetch(const std::vector<std::string>& options, const std::string& headers) {
  const bool isSecure = address_.compare(0, 6, "https:") == 0;
  std::vector<std::string> arguments = {
      "--silent", "--globoff", "--location", "--fail", "--remote-time",
      // A redirection must not lead to a file of this machine, nor away from encryption.
      "--proto", isSecure ? "=https" : "=http,https",
      // The files are large: it is how fast they come that is limited.
      "--connect-timeout", "15", "--speed-limit", "1000", "--speed-time", "60", "--user-agent",
      libquilp::kUserAgent, "--dump-header", headers, "--output", part_};
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.insert(arguments.end(), {"--url", address_});
  const int status =
      curl_.run(arguments, [this, &headers] { show_(sizeOf(part_), readHeaders(headers).total); });
  answer_ = readHeaders(headers);
  return status;
}

void Download::forget() {
  for (const std::string& path : {part_, partHeaders_, otherHeaders_}) {
    unlink(path.c_str());
  }
}

int Download::begin() {
  forget();
  const Headers last = readHeaders(file_ + ".headers");
  std::vector<std::string> options;
  const bool isWhole = last.total != 0 && sizeOf(file_) == last.total;
  if (isWhole && !last.etag.empty()) {
    options = {"--header", "If-None-Match: " + last.etag};
  } else if (isWhole && !last.modified.empty()) {
    options = {"--header", "If-Modified-Since: " + last.modified};
  }
  return fetch(options, partHeaders_);
}

int Download::resume() {
  const int status = fetch({"--continue-at", std::to_string(sizeOf(part_)), "--header",
                            "If-Range: " + readHeaders(partHeaders_).validator()},
                           otherHeaders_);
  unlink(otherHeaders_.c_str());
  return status;
}

Downloaded Download::failure(int status) {
  Downloaded result;
  if (sizeOf(part_) == 0) {
    forget();
  }
  result.status = status;
  if (status == kHttpError) {
    result.reason = hostOf(address_) + " answered HTTP " + std::to_string(answer_.status);
  } else if (status == kCannotWrite) {
    result.reason =
        isFull(part_) ? part_ + ": " + std::strerror(ENOSPC) : part_ + " cannot be written";
  } else {
    result.reason = libquilp::curlSentence(status, hostOf(address_));
  }
  result.isFinal = status != kHttpError;
  return result;
}

/// Puts the complete file in place.
Downloaded Download::finish() {
  Downloaded result;
  if (!isGzip(part_)) {
    forget();
    result.status = kUseless;
    result.reason = address_ + " is no gzip file";
    return result;
  }
  // The headers last: without them the file is fetched again.
  if (!sync(part_) || std::rename(part_.c_str(), file_.c_str()) != 0 ||
      std::rename(partHeaders_.c_str(), (file_ + ".headers").c_str()) != 0) {
    result.status = kUseless;
    result.reason = file_ + ": " + std::strerror(errno);
    result.isFinal = true;
    return result;
  }
  result.outcome = Outcome::kNew;
  result.bytes = sizeOf(file_);
  return result;
}

Downloaded Download::run() {
  for (int turn = 0;; ++turn) {
    const std::uint64_t before = sizeOf(part_);
    const Headers known = readHeaders(partHeaders_);
    const bool resumes = before > 0 && known.status == 200 && !known.validator().empty();
    const int status = resumes ? resume() : begin();
    if (curl_.signal() != 0) {
      Downloaded result;
      result.outcome = Outcome::kInterrupted;
      return result;
    }
    const bool isRest = resumes && (answer_.status == 206 || answer_.status == 416);
    if (status == 0 && !resumes && answer_.status == 304) {
      forget();
      Downloaded result;
      result.outcome = Outcome::kUnchanged;
      result.bytes = sizeOf(file_);
      return result;
    }
    const std::uint64_t now = sizeOf(part_);
    if (status == 0 && (!isRest || known.total == 0 || now == known.total)) {
      return finish();
    }
    const bool brokeOff =
        std::find(kBrokenOff.begin(), kBrokenOff.end(), status) != kBrokenOff.end();
    if (status == 0 || status == kNoRange || (resumes && answer_.status == 416)) {
      forget();  // the file has changed since
    } else if (!brokeOff || now <= before) {
      return failure(status);
    }
    if (turn == kMostTurns) {
      return failure(status);
    }
  }
}

}  // namespace

Downloaded download(Curl& curl, const std::string& address, const std::string& file,
                    const ShowDownload& show) {
  return Download(curl, address, file, show).run();
}

}  // namespace quilp
