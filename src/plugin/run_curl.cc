#include "plugin/run_curl.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "plugin/descriptor.h"
#include "plugin/files.h"
#include "plugin/guarded_run.h"

namespace libquilp {
namespace {

struct ClosePipe {
  void operator()(std::FILE* pipe) const { pclose(pipe); }
};
using Pipe = std::unique_ptr<std::FILE, ClosePipe>;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

int exitStatus(int status) {
  if (status == -1) {
    return status;
  }
  return WIFSIGNALED(status) ? 1 : WEXITSTATUS(status);
}

/// An empty file in memory; null if there is no descriptor or no memory for it.
File fileInMemory() {
  const int descriptor = aboveStandard(memfd_create("libquilp", MFD_CLOEXEC));
  File file(fdopen(descriptor, "r"));
  if (!file) {
    close(descriptor);
  }
  return file;
}

std::string contentOf(const File& file) {
  std::rewind(file.get());
  return readLines(file.get());
}

/// Runs a command under the control of a lookup. Its output goes to `file`, or nowhere.
int runControlled(const std::string& command, Control& control, std::FILE* file,
                  std::vector<int> kept = {}) {
  const int output = file != nullptr ? fileno(file) : -1;
  const ProgramEnd end = runGuardedCommand(command, control, output, std::move(kept));
  return end.started() ? end.exitStatus() : kNotStarted;
}

/// Takes the headers off a page, those of redirections, too.
std::string takeHeaders(std::string& page) {
  constexpr std::string_view kEnd = "\r\n\r\n";
  std::size_t start = 0;
  while (page.compare(start, 5, "HTTP/") == 0) {
    const std::size_t end = page.find(kEnd, start);
    start = end == std::string::npos ? page.size() : end + kEnd.size();
  }
  std::string headers = page.substr(0, start);
  page.erase(0, start);
  return headers;
}

CurlEnd runPiped(const std::string& command) {
  // "e": programs that other threads start concurrently do not inherit the pipe.
  Pipe pipe(popen(command.c_str(), "re"));
  if (!pipe) {
    return {};
  }
  std::string output = readLines(pipe.get());
  return {exitStatus(pclose(pipe.release())), std::move(output)};
}

}  // namespace

CurlEnd runCurl(const CurlRun& run, Control* control) {
  if (control != nullptr) {
    const File file = fileInMemory();
    if (!file) {
      return {};
    }
    const int status = runControlled(run.command, *control, file.get());
    return {status, contentOf(file)};
  }
  if (run.body.empty()) {
    return runPiped(run.command);
  }
  return {exitStatus(std::system(run.command.c_str())), ""};
}

std::vector<CurlEnd> runCurls(const std::string& command, const std::vector<std::string>& addresses,
                              Control& control) {
  constexpr std::size_t kRuns = 2;  // one for each of two processors was the fastest
  std::string runs[kRuns];
  std::vector<File> files;
  std::vector<int> kept;
  for (const std::string& address : addresses) {
    files.push_back(address.empty() ? nullptr : fileInMemory());
    if (files.back()) {
      std::string& run = runs[kept.size() % kRuns];
      kept.push_back(fileno(files.back().get()));
      run += run.empty() ? command : "";
      run += " -o /proc/self/fd/" + std::to_string(kept.back()) + " '" + address + '\'';
    }
  }
  std::vector<CurlEnd> ends(addresses.size());
  if (kept.empty()) {
    return ends;
  }
  const std::string both = runs[1].empty() ? runs[0]
                                           : runs[1] + " & " + runs[0] +
                                                 "; status=$?; wait $! || status=$?; exit $status";
  const int status = runControlled(both, control, nullptr, std::move(kept));
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (files[i]) {
      ends[i].status = status;
      ends[i].output = contentOf(files[i]);
      ends[i].headers = takeHeaders(*ends[i].output);
    }
  }
  return ends;
}

}  // namespace libquilp
