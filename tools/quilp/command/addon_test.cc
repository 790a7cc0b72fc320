#include <chrono>
#include <iostream>
#include <string>
#include <vector>

#include "command/commands.h"
#include "command/stock_operand.h"
#include "output/exit_status.h"
#include "output/message.h"
#include "platform/stock_add_ons.h"
#include "process/run.h"

namespace quilp {
namespace {

constexpr std::chrono::seconds kLimit{120};

/// Why the add-on cannot work; empty if it can.
std::string tryOut(const StockAddOn& addOn) {
  if (!addOn.isInstalled()) {
    return addOn.program() + " is not installed";
  }
  const Run run = Runner(addOn.program(), kLimit).run({"test"});
  if (run.timedOut) {
    return std::string(addOn.name) + ": no answer within two minutes";
  }
  std::cout << (run.status == 0 ? run.output : "");
  if (run.status != 0 && run.output.empty()) {
    return std::string(addOn.name) + ": exit status " + std::to_string(run.status);
  }
  return run.status == 0 ? "" : run.output.substr(0, run.output.find_last_not_of('\n') + 1);
}

int test(const std::vector<std::string>& names) {
  int status = 0;
  for (const StockAddOn* const addOn : stockAddOnsOf(names)) {
    const std::string fault = tryOut(*addOn);
    tell(fault);
    status = fault.empty() ? status : kNothingFound;
  }
  return std::cout.flush() ? status : kNothingFound;
}

}  // namespace

void addAddonTest(Command& addon) {
  static std::vector<std::string> names;
  Command& command =
      addon.add("test", "Tell whether stock add-ons can work, by one real request each");
  command.operands.push_back(stockOperand(names));
  command.run = [] { return test(names); };
}

}  // namespace quilp
