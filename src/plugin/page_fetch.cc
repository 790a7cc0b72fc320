#include "plugin/page_fetch.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "plugin/files.h"

namespace libquilp {
namespace {

constexpr char kLimits[] = " -A Mozilla/5.0 --connect-timeout 15 --max-time 25";
// What a shell answers to a command that it cannot read.
constexpr int kUnreadableCommand = 2;

struct ClosePipe {
  void operator()(std::FILE* pipe) const { pclose(pipe); }
};
using Pipe = std::unique_ptr<std::FILE, ClosePipe>;

thread_local Pipe leftPipe;

bool canBeQuoted(const std::string& address) {
  return address.find_first_of(std::string_view("'\0", 2)) == std::string::npos;
}

std::string clientCommand(const std::string& address) {
  return std::string(kHttpClient) + " -s -L '" + address + "'";
}

int exitStatus(int status) {
  if (status == -1) {
    return status;
  }
  return WIFSIGNALED(status) ? 1 : WEXITSTATUS(status);
}

Pipe openPipe(const std::string& address, const char* options) {
  if (!canBeQuoted(address)) {
    return {};
  }
  // "e": a program that another thread starts meanwhile does not inherit the pipe.
  return Pipe(popen((clientCommand(address) + options).c_str(), "re"));
}

std::optional<std::string> readPipe(const Pipe& pipe) {
  if (!pipe) {
    return {};
  }
  return readLines(pipe.get());
}

}  // namespace

FilePage fetchToFile(const std::string& address, PageFile& file) {
  if (!canBeQuoted(address)) {
    return {kUnreadableCommand, {}};
  }
  const std::string path = file.path;
  const std::string command =
      "rm -f " + path + ";" + clientCommand(address) + " -o " + path + kLimits;
  const std::lock_guard<std::mutex> lock(file.inUse);
  const int status = exitStatus(std::system(command.c_str()));
  if (status != 0) {
    return {status, {}};
  }
  return {0, readFile(file.path)};
}

std::optional<std::string> fetchThroughPipe(const std::string& address) {
  return readPipe(openPipe(address, kLimits));
}

std::optional<std::string> fetchWithoutLimits(const std::string& address) {
  return readPipe(openPipe(address, ""));
}

std::optional<std::string> fetchLeavingPipe(const std::string& address) {
  leftPipe = openPipe(address, kLimits);
  return readPipe(leftPipe);
}

void collectPipe() { leftPipe.reset(); }

}  // namespace libquilp
