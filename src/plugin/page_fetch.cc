#include "plugin/page_fetch.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "plugin/descriptor.h"
#include "plugin/fetch_report.h"
#include "plugin/files.h"
#include "plugin/guarded_run.h"
#include "readable.h"
#include "text/cutter.h"
#include "text/removal.h"

namespace libquilp {
namespace {

constexpr char kLimits[] = " -A Mozilla/5.0 --connect-timeout 15 --max-time 25";
// Exit status of a shell for a command that it cannot parse.
constexpr int kUnreadableCommand = 2;
// Exit status of curl when it cannot write a page.
constexpr int kUnwritablePage = 23;

// Result of system() when it cannot start a shell.
constexpr int kNotStarted = -1;

struct ClosePipe {
  void operator()(std::FILE* pipe) const { pclose(pipe); }
};
using Pipe = std::unique_ptr<std::FILE, ClosePipe>;

bool canBeQuoted(const std::string& address) {
  return address.find_first_of(std::string_view("'\0", 2)) == std::string::npos;
}

/// Without this option curl expands braces and brackets to several addresses.
const char* globOption(const std::string& address) {
  return address.find_first_of("{}[]") != std::string::npos ? " -g" : "";
}

std::string curlCommand(const std::string& address) {
  return std::string(kHttpClient) + globOption(address) + " -s -L '" + address + "'";
}

/// One word of a command.
std::string quoted(const std::string& text) { return '\'' + replaced(text, '\'', "'\\''") + '\''; }

/// Whether curl would write through a link or FIFO in the page's place: another user's, which the
/// host may not remove.
bool isBlocked(const char* path) {
  struct stat status = {};
  return lstat(path, &status) == 0 && !S_ISREG(status.st_mode) && unlink(path) != 0;
}

int exitStatus(int status) {
  if (status == -1) {
    return status;
  }
  return WIFSIGNALED(status) ? 1 : WEXITSTATUS(status);
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Runs a command under the control of a lookup, and reads its output as from a pipe. Returns its
/// exit status.
int runControlled(const std::string& command, Control& control, std::string& output) {
  const int descriptor = aboveStandard(memfd_create("libquilp", MFD_CLOEXEC));
  const std::unique_ptr<std::FILE, CloseFile> file(fdopen(descriptor, "r"));
  if (!file) {
    close(descriptor);  // out of memory for the stream
    return kNotStarted;
  }
  const ProgramEnd end = runGuardedCommand(command, control, descriptor);
  std::rewind(file.get());
  output = readLines(file.get());
  return end.started() ? end.exitStatus() : kNotStarted;
}

std::optional<std::string> fetchPiped(const std::string& address, const char* options,
                                      const Context& context) {
  if (!canBeQuoted(address)) {
    return {};
  }
  FetchReport report(address, context);
  const std::string command = curlCommand(address) + options + report.option();
  if (context.control != nullptr) {
    std::string page;
    report.finish(runControlled(command, *context.control, page), page);
    return page.size() > kReadLimit ? std::nullopt : std::optional<std::string>(std::move(page));
  }
  // "e": programs that other threads start concurrently do not inherit the pipe.
  Pipe pipe(popen(command.c_str(), "re"));
  if (!pipe) {
    report.finish(kNotStarted, {});
    return {};
  }
  std::string page = readLines(pipe.get());
  report.finish(exitStatus(pclose(pipe.release())), page);
  if (page.size() > kReadLimit) {
    return {};
  }
  return page;
}

}  // namespace

FilePage fetchToFile(const std::string& address, PageFile& file, const Context& context) {
  if (!canBeQuoted(address)) {
    return {kUnreadableCommand, {}};
  }
  if (context.control != nullptr) {  // without a file that another lookup may be using
    FetchReport report(address, context);
    std::string page;
    const int status =
        runControlled(curlCommand(address) + kLimits + report.option(), *context.control, page);
    report.finish(status, page);
    return {status, status == 0 ? std::optional<std::string>(std::move(page)) : std::nullopt};
  }
  FetchReport report(address, context);
  const std::string path = file.path;
  const std::string command =
      "rm -f " + path + ";" + curlCommand(address) + " -o " + path + kLimits + report.option();
  const std::lock_guard<std::mutex> lock(file.inUse);
  if (isBlocked(file.path)) {
    report.finish(kUnwritablePage, {});
    return {kUnwritablePage, {}};
  }
  const int status = exitStatus(std::system(command.c_str()));
  FilePage page = {status, status == 0 ? readFile(file.path) : std::nullopt};
  report.finish(status, page.text ? *page.text : std::string_view());
  return page;
}

std::optional<std::string> fetchThroughPipe(const std::string& address, const Context& context) {
  return fetchPiped(address, kLimits, context);
}

std::optional<std::string> fetchWithoutLimits(const std::string& address, const Context& context) {
  return fetchPiped(address, "", context);
}

ServiceDocument::ServiceDocument(const Context& context) : context_(context) {
  headers_.choose();
  body_.choose();
}

bool ServiceDocument::fetch(const std::string& address) {
  constexpr int kAttempts = 3;
  constexpr useconds_t kPause = 500;  // microseconds: this short on purpose
  bool overloaded = false;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    fetchOnce(address);
    const auto status = statusLine();
    overloaded = status && contains(*status, "503");
    if (status && !overloaded) {
      break;
    }
    if (overloaded) {
      usleep(kPause);
    }
  }
  return !overloaded;
}

void ServiceDocument::fetchOnce(const std::string& address) {
  const std::string headers = headers_.name();
  const std::string body = body_.name();
  if (headers.empty() || body.empty()) {
    return;  // curl would take the next word of its command for the missing name
  }
  FetchReport report(address, context_, headers);
  const std::string command = std::string(kHttpClient) + globOption(address) + " -D '" + headers +
                              "' --connect-timeout 15 -o " + body + ' ' + quoted(address) +
                              " >/dev/null 2>&1";
  std::string nothing;
  const int status = context_.control != nullptr
                         ? runControlled(command, *context_.control, nothing)
                         : exitStatus(std::system(command.c_str()));
  if (context_.observer != nullptr) {
    report.finish(status, readFile(body.c_str()).value_or(""));
  }
}

std::optional<std::string> ServiceDocument::statusLine() const {
  std::FILE* const headers =
      isReadable(headers_.name()) ? std::fopen(headers_.name(), "r") : nullptr;
  if (headers == nullptr) {
    return {};
  }
  char line[1024];
  const bool read = std::fgets(line, sizeof line, headers) != nullptr;
  std::fclose(headers);
  return read ? line : "";
}

}  // namespace libquilp
