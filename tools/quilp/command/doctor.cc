#include <json/value.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "command/commands.h"
#include "command/options.h"
#include "doctor/checkup.h"
#include "output/exit_status.h"
#include "output/json_output.h"
#include "output/table.h"

namespace quilp {
namespace {

const char* wordOf(Diagnosis::State state) {
  return state == Diagnosis::State::kOk        ? "ok"
         : state == Diagnosis::State::kWarning ? "warning"
                                               : "fault";
}

bool print(const std::vector<Diagnosis>& diagnoses, Format format) {
  if (format == Format::kJson) {
    Json::Value list(Json::arrayValue);
    for (const Diagnosis& diagnosis : diagnoses) {
      Json::Value one;
      one["subject"] = diagnosis.subject;
      one["state"] = wordOf(diagnosis.state);
      one["what"] = jsonText(diagnosis.what);
      one["remedy"] = jsonText(diagnosis.remedy);
      list.append(one);
    }
    return printJson(list);
  }
  Table table({"subject", "state", "what", "what to do"});
  for (const Diagnosis& diagnosis : diagnoses) {
    table.addRow({diagnosis.subject, wordOf(diagnosis.state), diagnosis.what, diagnosis.remedy});
  }
  return table.print() && std::cout.flush();
}

int examine(Format format) {
  const std::vector<Diagnosis> diagnoses = checkUp();
  const bool isHealthy = std::none_of(
      diagnoses.begin(), diagnoses.end(),
      [](const Diagnosis& diagnosis) { return diagnosis.state == Diagnosis::State::kFault; });
  return print(diagnoses, format) && isHealthy ? 0 : kNothingFound;
}

}  // namespace

void addDoctorCommand(Command& program) {
  static Format format;
  Command& command =
      program.add("doctor", "Check what lookups need on this appliance, and tell what to do");
  addFormat(command, format, {Format::kTable, Format::kJson});
  command.run = [] { return examine(format); };
}

}  // namespace quilp
