#include "explain/steps.h"

#include <cstring>

namespace quilp {

void runAddOn(const libquilp::RegistrySection& section, libquilp::ShellCall& shell,
              std::initializer_list<const char*> arguments, const char* root,
              Explanation& explanation) {
  explanation.section = section.name;
  explanation.command.assign(arguments.begin(), arguments.end());
  explanation.command.insert(explanation.command.begin(), shell.shell());
  const int status = shell.run(arguments);
  explanation.command.insert(explanation.command.end(), {"-o", shell.file()});
  if (libquilp::canBeExecuted(shell.shell())) {
    explanation.shellStatus = status;
  }
  explanation.reason = reasonOfRun(section, status);
  if (!explanation.reason) {
    explanation.reason = reasonOfDocument(shell.file(), root);
  }
}

bool isFilled(const char* value) {
  return value != nullptr && value[std::strspn(value, " \t\r\n")] != '\0';
}

Reason reasonOfEntries(int rows) {
  if (rows == 0) {
    return {"no-results", "the add-on has no results"};
  }
  return {"empty-rows", "the entries of the add-on's document have no CDATA sections with a text"};
}

}  // namespace quilp
