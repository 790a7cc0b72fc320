#include "explain/transfer_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "explain/transfer_lines.h"

namespace quilp {
namespace {

// The first version that can tell its own status in a line.
constexpr int kWritesStatus = 7075;

}  // namespace

TransferLog::TransferLog(Source source) : source_(source) {
  if (source == Source::kPages) {
    error_ = clientVersion() < kWritesStatus ? -1 : fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    if (error_ < 0) {
      return;
    }
  }
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    return;
  }
  reading_ = ends[0];
  writing_ = ends[1];
  config_ = std::make_unique<ClientConfig>(configuration());
  if (!config_->inUse()) {
    end();
    return;
  }
  if (source == Source::kPages) {
    std::fflush(stderr);
    dup2(writing_, STDERR_FILENO);
  }
  listener_ = std::thread([this] {
    char piece[4096];
    for (ssize_t size = 0; (size = read(reading_, piece, sizeof piece)) > 0;) {
      heard_.append(piece, static_cast<std::size_t>(size));
    }
  });
}

TransferLog::~TransferLog() { end(); }

std::string TransferLog::configuration() const {
  if (source_ == Source::kPages) {
    return kTransferLine;
  }
  // A pipe that nobody else can name. The client opens it anew, whatever became of its outputs.
  return "verbose\nsilent\nshow-error\nstderr = \"/proc/" + std::to_string(getpid()) + "/fd/" +
         std::to_string(writing_) + "\"\n";
}

void TransferLog::end() {
  config_.reset();
  if (error_ >= 0) {
    std::fflush(stderr);
    dup2(error_, STDERR_FILENO);
    close(error_);
    error_ = -1;
  }
  if (writing_ >= 0) {
    close(writing_);
    writing_ = -1;
  }
  if (listener_.joinable()) {
    listener_.join();
  }
  if (reading_ >= 0) {
    close(reading_);
    reading_ = -1;
  }
}

std::vector<Transfer> TransferLog::take() {
  end();
  if (source_ == Source::kDocuments) {
    return transfersOfAccount(heard_);
  }
  std::string others;
  std::vector<Transfer> transfers = transfersOfLines(heard_, others);
  std::fputs(others.c_str(), stderr);
  return transfers;
}

}  // namespace quilp
