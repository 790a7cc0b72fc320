#include "explain/transfer_log.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "explain/transfer_lines.h"

namespace quilp {
namespace {

// The first version that can tell its own status in a line.
constexpr int kWritesStatus = 7075;

/// Clients that fetch at the same time write character by character: their texts are kept apart, by
/// the socket's word for who wrote. The pipe, whose end a client opens itself, cannot tell.
std::string hear(int input) {
  std::vector<std::pair<pid_t, std::string>> texts;  // in the order of their starts
  for (;;) {
    char piece[4096];
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(ucred))];
    iovec data = {piece, sizeof piece};
    msghdr message = {};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    ssize_t size = recvmsg(input, &message, 0);
    ucred writer = {};
    if (size < 0 && errno == ENOTSOCK) {
      size = read(input, piece, sizeof piece);
    } else if (const cmsghdr* header = CMSG_FIRSTHDR(&message)) {
      std::memcpy(&writer, CMSG_DATA(header), sizeof writer);
    }
    if (size <= 0) {
      break;
    }
    auto text = std::find_if(texts.begin(), texts.end(),
                             [&writer](const auto& one) { return one.first == writer.pid; });
    if (text == texts.end()) {
      text = texts.insert(text, {writer.pid, ""});
    }
    text->second.append(piece, static_cast<std::size_t>(size));
  }
  std::string all;
  for (const auto& [writer, text] : texts) {
    all += text;
  }
  return all;
}

}  // namespace

TransferLog::TransferLog(Source source) : source_(source) {
  if (source == Source::kPages) {
    error_ = clientVersion() < kWritesStatus ? -1 : fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    if (error_ < 0) {
      return;
    }
  }
  int ends[2];
  const bool open = source == Source::kPages
                        ? socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0
                        : pipe2(ends, O_CLOEXEC) == 0;
  if (!open) {
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
    const int yes = 1;
    setsockopt(reading_, SOL_SOCKET, SO_PASSCRED, &yes, sizeof yes);
    dup2(writing_, STDERR_FILENO);
  }
  listener_ = std::thread([this] { heard_ = hear(reading_); });
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
