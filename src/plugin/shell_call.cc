#include "plugin/shell_call.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/exec_command.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

constexpr std::size_t kPrefixSize = 5;

bool isProgram(const char* path) {
  struct stat status = {};
  return stat(path, &status) == 0 && S_ISREG(status.st_mode) &&
         faccessat(AT_FDCWD, path, X_OK, AT_EACCESS) == 0;
}

}  // namespace

bool canBeExecuted(const char* shell) {
  if (*shell == '\0') {
    return false;
  }
  if (std::strchr(shell, '/') != nullptr) {
    return isProgram(shell);
  }
  const char* path = std::getenv("PATH");
  Cutter folders(path != nullptr ? path : "/bin:/usr/bin");
  for (;;) {
    const Cut folder = folders.upTo(":");
    std::string program(folder.value_or(folders.rest()));
    program += program.empty() ? "" : "/";
    if (isProgram((program + shell).c_str())) {
      return true;
    }
    if (!folder) {
      return false;
    }
  }
}

const char* withoutPrefix(const char* id) {
  return id != nullptr && strnlen(id, kPrefixSize) == kPrefixSize ? id + kPrefixSize : "";
}

ShellCall::ShellCall(const char* type, Lookup lookup)
    : found_(lookup(type, shell_, kShellSize) != nullptr) {}

int ShellCall::run(std::initializer_list<const char*> arguments) {
  file_.choose();
  if (!canBeExecuted(shell_)) {
    return 0;
  }
  std::vector<char*> argv = {shell_};
  for (const char* argument : arguments) {
    argv.push_back(const_cast<char*>(argument));
  }
  argv.push_back(const_cast<char*>("-o"));
  argv.push_back(const_cast<char*>(file_.name()));
  argv.push_back(nullptr);

  const pid_t host = getpid();
  const int status = ExecCommand(argv.data());
  if (getpid() != host) {
    _exit(0);  // the program could not be executed after all: a second host must not go on
  }
  return status;
}

XMLNode ShellCall::document(const char* root) const {
  int error = 0;
  return XMLNode::openFileHelper(file_.name(), &error, root);
}

}  // namespace libquilp
