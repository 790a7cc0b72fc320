#include "plugin/run_curl.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

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

int exitStatus(int status) {
  if (status == -1) {
    return status;
  }
  return WIFSIGNALED(status) ? 1 : WEXITSTATUS(status);
}

/// Runs a command under the control of a lookup, and reads its output as from a pipe.
CurlEnd runControlled(const std::string& command, Control& control) {
  const int descriptor = aboveStandard(memfd_create("libquilp", MFD_CLOEXEC));
  const std::unique_ptr<std::FILE, CloseFile> file(fdopen(descriptor, "r"));
  if (!file) {
    close(descriptor);  // out of memory for the stream
    return {-1, ""};
  }
  const ProgramEnd end = runGuardedCommand(command, control, descriptor);
  std::rewind(file.get());
  std::string output = readLines(file.get());
  return {end.started() ? end.exitStatus() : -1, std::move(output)};
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
    return runControlled(run.command, *control);
  }
  if (run.body.empty()) {
    return runPiped(run.command);
  }
  return {exitStatus(std::system(run.command.c_str())), ""};
}

}  // namespace libquilp
